// A simulated device with a flash drive.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/Namespaces.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TextFile.h"

// Where the device has its flash drive.
inline const std::filesystem::path flashPath = "/mnt/cn/cfdrive";

// A target whose flash drive is the folder "flash" beside it, with file elements at `locations`.
inline nlohmann::ordered_json flashDocument(const std::vector<std::string>& locations = {})
{
    std::vector<nlohmann::ordered_json> elements;
    for (const std::string& location : locations) {
        elements.push_back(
            fileElement(static_cast<unsigned>(elements.size()) + 1, {{"LOCATION", location}, {"VALID", 0}}));
    }
    nlohmann::ordered_json document = target({board("CN", {}, elements)});
    document["flashDrive"] = "flash";
    return document;
}

// Such a target, its flash drive still empty.
class FlashTarget {
public:
    explicit FlashTarget(const std::vector<std::string>& locations = {}) : target(flashDocument(locations))
    {
        std::filesystem::create_directory(flash());
    }

    std::filesystem::path flash() const { return target.folder() / "flash"; }

    SimulatedTarget target;
};

// Tests of the flash drive.
class FlashDrive : public testing::Test {
protected:
    void SetUp() override { SKIP_WITHOUT_MOUNT(); }
};
