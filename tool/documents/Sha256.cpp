#include "tool/documents/Sha256.h"

#include <array>

namespace TrellanTool {

Sha256::Sha256()
{
    SHA256Init(&state);
}

void Sha256::add(std::string_view bytes)
{
    SHA256Update(&state, reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

std::string Sha256::digest() const
{
    SHA2_CTX ending = state;
    std::array<char, SHA256_DIGEST_STRING_LENGTH> text{};
    return SHA256End(&ending, text.data());
}

}  // namespace TrellanTool
