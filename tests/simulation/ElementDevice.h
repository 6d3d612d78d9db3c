// A simulated device with one update element and a file to update it with.
#pragma once

#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "libZoRtosAbstraction/ZoNRtosAbstraction.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TextFile.h"

// Lets simulated time pass.
inline void pass(unsigned microseconds)
{
    ZoNRtosAbstraction::usleep(microseconds);
}

// Where the parameters of the element are in the target file.
inline const nlohmann::ordered_json::json_pointer elementPointer("/tree/items/0/items/0/items/0/parameters");

// The parameters of an element before its update.
inline const nlohmann::ordered_json oldValues = {{"VERSION", "1.0"}, {"ID", 1}, {"VALID", 0}, {"CHECKSUM_CRC32", 7}};

// A device whose HCN has the element 1 with `parameters`, and 9 bytes in the file a.bin beside it. The members of
// `more` take the place of the target file's.
class ElementDevice {
public:
    explicit ElementDevice(const nlohmann::ordered_json& parameters,
                           const nlohmann::ordered_json& more = nlohmann::ordered_json::object())
        : target(document(parameters, more))
    {
        write("123456789");
    }

    void write(const std::string& content) const { writeText(file(), content); }

    // The absolute path of a.bin.
    std::string file() const { return target.folder() / "a.bin"; }

    // The parameters of the element in the target file.
    nlohmann::ordered_json element() const { return target.document()[elementPointer]; }

    // The target file.
    std::string text() const { return readText(target.path()); }

    SimulatedTarget target;

private:
    static nlohmann::ordered_json document(const nlohmann::ordered_json& parameters, const nlohmann::ordered_json& more)
    {
        nlohmann::ordered_json whole = ::target({board("HCN", {}, {item("UPDATE_ELEMENT[1]", parameters)})});
        whole.update(more);
        return whole;
    }
};
