// FindingForms: what findings say, apart from the numbers in it. Millions of findings say the same.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "ZoITrellanInspector.h"
#include "base/PackedBytes.h"

namespace ZoNUpdateBase {

class FindingForms {
public:
    // Adds the severity, the rule, the pointer and the message of `finding` to `bytes`.
    void add(std::string& bytes, const ZoNTrellanInspector::ZoTFinding& finding);

    // Takes them off `bytes` into `finding`, which has its entry and its board.
    void take(PackedReader& bytes, ZoNTrellanInspector::ZoTFinding& finding) const;

    // Takes them off for nothing.
    void skip(PackedReader& bytes) const;

private:
    struct Form {
        std::string text;
        std::size_t numberCount;  // of the numbers that each finding tells itself
    };

    // The number of the form with the text `form`; that of none where it is new, or there are too many.
    std::size_t numberOfForm();
    std::size_t mostForms() const;

    std::vector<Form> forms;
    std::unordered_map<std::string, std::size_t> formNumbers;
    std::array<std::size_t, 256> seen = {};  // hashes of texts that have no form yet
    std::size_t count = 0;                   // of findings
    std::string form;                        // of the present finding
    std::vector<std::uint64_t> numbers;      // in it
};

}  // namespace ZoNUpdateBase
