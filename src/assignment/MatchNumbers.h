// Numbers for the values that are compared: what elements have is numbered, and what files accept is told in these
// numbers.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <tuple>
#include <vector>

#include "base/MatchValue.h"
#include "base/NumberRow.h"
#include "base/PositionIndex.h"
#include "libZoJsonLib/ZoNJson.h"

namespace ZoNUpdateAssignment {

class Requirements;
using ZoNUpdateBase::MatchValue;

using ZoNUpdateBase::Number;

// The numbers of the values that elements have for one criterion.
class Numbering {
public:
    Number add(MatchValue value);

    // Nothing for a value that was not added.
    std::optional<Number> find(const MatchValue& value) const;

    // All numbers are below this one.
    Number end() const { return static_cast<Number>(values.size()); }

private:
    ZoNUpdateBase::PositionIndex index;
    std::vector<MatchValue> values;
};

// A value of a criterion that is stated as one number stands for itself.
class Numberings {
public:
    Numberings();

    Number add(std::size_t criterion, MatchValue value);
    std::optional<Number> find(std::size_t criterion, const MatchValue& value) const;
    Number end(std::size_t criterion) const { return byCriterion[criterion].end(); }

private:
    std::vector<Numbering> byCriterion;
};

// A part of all the numbers that files accept.
struct List {
    std::size_t begin = 0;
    std::size_t size = 0;
};

using Lists = std::array<List, 4>;  // by criterion that is stated as a list, the board type aside

// What the properties of files accept, in numbers. What no element has is left out.
class AcceptedNumbers {
public:
    // Keeps a reference.
    explicit AcceptedNumbers(const Numberings& numberings) : numberings(numberings) {}

    // Of a criterion by which one value is accepted; nothing when no element has it.
    std::optional<Number> numberOf(std::size_t criterion, const Requirements& requirements) const;

    // The lists that are read from now on are those of another file.
    void beginFile();

    // The file has board objects: what these requirements of the entry itself state for all of them is read once,
    // however many they are.
    void share(const Requirements& entry);

    // What a board object of the file, or the entry itself, accepts of the listed criteria.
    Lists listsOf(const Requirements& requirements);

    // In ascending order. Good until more lists are read.
    std::span<const Number> numbersOf(const List& list) const
    {
        return std::span(numbers).subspan(list.begin, list.size);
    }

    // Forgets the lists of this file.
    void dropFile() { numbers.resize(beginOfFile); }

private:
    struct SharedList {
        const ZoNJson::json* property = nullptr;
        std::optional<List> list;  // once it was read
    };

    List read(std::size_t criterion, const ZoNJson::json& property);

    const Numberings& numberings;
    std::vector<Number> numbers;
    std::size_t beginOfFile = 0;
    std::array<SharedList, std::tuple_size_v<Lists>> shared;
};

}  // namespace ZoNUpdateAssignment
