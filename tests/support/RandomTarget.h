// RandomTarget: simulated targets at random, with everything that the library looks at in a tree, and much that it does
// not.
#pragma once

#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <string>
#include <vector>

class RandomTarget {
public:
    struct Made {
        nlohmann::ordered_json target;
        nlohmann::ordered_json readable;      // the same without what cannot be read
        std::vector<std::string> unreadable;  // "PARAMETER of ITEM", in the order of the tree
    };

    // With `faulty`, some parameters cannot be read.
    RandomTarget(unsigned seed, bool faulty) : faulty(faulty), random(seed) {}

    Made make();

    unsigned below(unsigned end) { return static_cast<unsigned>(random() % end); }
    bool oneIn(unsigned n) { return below(n) == 0; }

    template <class Value>
    const Value& pick(const std::vector<Value>& values)
    {
        return values[below(static_cast<unsigned>(values.size()))];
    }

private:
    using Json = nlohmann::ordered_json;

    // An item as it is, and without what cannot be read.
    struct Twin {
        Json whole;
        Json readable;
    };

    Twin item(const std::string& above, const std::string& id, unsigned depth);
    Twin boardItem(const std::string& above, unsigned depth);
    Twin updateInfo(const std::string& above, const std::string& id);
    Twin element(const std::string& above, unsigned number);
    void add(Twin& twin, const std::string& address, const std::string& name, const Json& value);
    void addBoardParameters(Twin& twin, const std::string& address);
    void addUnitParameters(Twin& twin, const std::string& address);
    void addUnseenParameters(Twin& twin);
    Json unfitting(const Json& value);
    std::string id(const std::string& kind, unsigned most);
    static std::string addressOf(const std::string& above, const std::string& id);
    static void append(Twin& twin, Twin&& below);

    const bool faulty;
    std::mt19937 random;
    Json scriptedFaults = Json::object();
    std::set<std::string> readableKeys;
    std::vector<std::string> unreadable;
};
