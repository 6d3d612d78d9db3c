// World: an archive, a target and an updater that has read both, made of as many entries and elements as are asked for.
#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>

#include "support/ErrorPool.h"
#include "support/MessageCapture.h"
#include "support/OpenUpdater.h"
#include "support/SimulatedTarget.h"
#include "support/TestArchive.h"

// What entries state and elements have.
struct Shape {
    using Json = nlohmann::ordered_json;

    std::function<Json(unsigned)> entry;                  // the members of this one, beside those that each has
    std::function<void(Json&, Json&, unsigned)> element;  // changes the parameters of this board and its element
};

// Entries and elements of many boards, each for one another: with "boards" in one of five, lists, and files on the
// flash drive in one of fifty.
Shape production();

class World {
public:
    // The device takes up the 1000 bytes of an update in `seconds` of a virtual clock.
    World(const Shape& shape, unsigned entries, unsigned elements, unsigned command = ZoNTrellanUpdater::UPDATE,
          unsigned seconds = 1);

    OpenUpdater& updater() { return *instance; }
    ErrorPool& errorPool() { return errors; }
    const TestArchive& archive() const { return folder; }

    // Reads both, and expects that this succeeds.
    void apply();

private:
    SimulatedTarget target;
    TestArchive folder;
    std::unique_ptr<OpenUpdater> instance;
    std::unique_ptr<MessageCapture> quiet;
    ErrorPool errors;
};
