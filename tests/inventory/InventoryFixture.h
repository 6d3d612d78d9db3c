// InventoryFixture: reads the inventory of a simulated target and gives access to what was found.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "inventory/ZoCUpdateInventory.h"
#include "support/ErrorPool.h"
#include "support/MessageCapture.h"
#include "support/OpenUpdater.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"

class InventoryFixture : public ::testing::Test {
protected:
    using Json = nlohmann::ordered_json;
    using Element = ZoNUpdateInventory::ZoSUpdateElement;

    // To be set before the first call of anything below.
    ZoNTrellanUpdater::ZoTOptions options;

    // Takes the errors of every read.
    ErrorPool errors;

    // The inventory of one updater, made at the first call.
    ZoCUpdateInventory& inventory();

    // Reads the inventory of a new target with this document; the updater stays the same. Returns getInventory's
    // result.
    int readTarget(const Json& document);

    // The same for a target with these items below its root.
    int read(const std::vector<Json>& items) { return readTarget(target(items)); }

    // Element at `position` of the list. Throws std::out_of_range when there is none.
    const Element& element(std::size_t position = 0);

    // The names of all elements, in list order, and their indices.
    std::vector<std::string> names();
    std::vector<unsigned> indices();

    // The texts of all errors, in order.
    std::vector<std::string> errorTexts() const;

    // What the updater has printed since it was made.
    std::string printed();

private:
    std::unique_ptr<SimulatedTarget> simulated;
    std::unique_ptr<OpenUpdater> updater;
    std::unique_ptr<MessageCapture> messages;
};

// An update element with the name `name`.
nlohmann::ordered_json named(unsigned index, const std::string& name);

// An update element with the name `name` and these parameters as well.
nlohmann::ordered_json named(unsigned index, const std::string& name, nlohmann::ordered_json parameters);
