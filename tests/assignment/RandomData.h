// RandomData: file entries and elements at random, over few enough values that most elements fit several files.
#pragma once

#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "inventory/ZoSUpdateElement.h"

class RandomData {
public:
    // How alike all is, and how much entries state.
    struct Style {
        unsigned types = 8;  // of boards
        unsigned ids = 6;
        unsigned longestList = 3;    // values in an array
        unsigned statedOneIn = 5;    // how seldom a property is stated
        unsigned mistakeOneIn = 40;  // how seldom a value is none that an element can have
    };

    explicit RandomData(unsigned seed) : RandomData(seed, Style()) {}
    RandomData(unsigned seed, const Style& style) : style(style), random(seed) {}

    nlohmann::ordered_json entry();

    // Gives the element what files ask for.
    void fill(ZoNUpdateInventory::ZoSUpdateElement& element);

    unsigned below(unsigned end) { return static_cast<unsigned>(random() % end); }

private:
    using Json = nlohmann::ordered_json;

    bool oneIn(unsigned n) { return below(n) == 0; }

    template <class Value>
    const Value& pick(const std::vector<Value>& values)
    {
        return values[below(static_cast<unsigned>(values.size()))];
    }

    // A value of `values`, or an array of them, now and then with something else.
    template <class Value>
    Json listed(const std::vector<Value>& values);

    Json boardType();
    void addOptional(Json& object);
    void addDestination(Json& object, bool toFlashDrive);

    const Style style;
    std::mt19937 random;
};
