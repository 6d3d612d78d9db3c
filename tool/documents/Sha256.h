// SHA-256 digests.
#pragma once

#include <sha2.h>

#include <string>
#include <string_view>

namespace TrellanTool {

class Sha256 {
public:
    Sha256();
    void add(std::string_view bytes);

    // The digest of all that was added, as 64 hexadecimal digits in small letters. More may be added then.
    std::string digest() const;

private:
    SHA2_CTX state;
};

}  // namespace TrellanTool
