// Inspecting: base of the tests of the inspector.
//
// A test puts boards into `boards`, file entries into `entries` and says what else is to be as it wants; apply() makes
// the target and the archive, and an updater with an inspector that has read both. A file that is described is in the
// archive, unless it is named in `missingFiles`.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "ZoITrellanInspector.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "support/MessageCapture.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "support/UpdaterOptions.h"

class Inspecting : public testing::Test {
protected:
    using Json = nlohmann::ordered_json;
    using Names = std::vector<std::string>;

    Inspecting() { masterErrors().clear(); }
    ~Inspecting() override { masterErrors().clear(); }

    // Makes everything anew and calls apply(); its result.
    unsigned apply(unsigned command = ZoNTrellanUpdater::UPDATE);

    // The elements' states, by the names that people know: "noFile", "upToDate" and so on.
    Names states() const;
    std::string state(unsigned index) const { return states().at(index); }

    // The texts of the element's errors.
    Names errorsOf(unsigned index) const;

    // Checks the used files; a line for each finding: "error missing-file /files/0/name".
    Names check();

    // The messages of the last check.
    Names messagesFound() const;

    static ZoCErrorListPool& masterErrors() { return ZoCErrorManager::getSingleton()->getMasterErrorList(); }

    std::vector<Json> boards;
    std::vector<Json> entries;
    Json script = Json::object();
    bool hasFlashDrive = false;
    std::map<std::string, std::string> contents;  // of files; "content" where nothing else is stated
    std::set<std::string> missingFiles;
    ZoNTrellanUpdater::ZoTOptions options =
        optionsFor(ZoNTrellanUpdater::UPDATE, "");  // the archive's folder comes here

    std::unique_ptr<SimulatedTarget> simulated;
    std::unique_ptr<TestArchive> archive;
    std::unique_ptr<ZoITrellanUpdater> updater;
    std::unique_ptr<ZoITrellanInspector> inspector;
    std::optional<MessageCapture> messages;
};

// A board of type KR5120 that is the HCN, and another board of type IO7, with these elements.
nlohmann::ordered_json hcnBoard(std::vector<nlohmann::ordered_json> elements);
nlohmann::ordered_json ioBoard(std::vector<nlohmann::ordered_json> elements);

// An active, valid element of version 1.0 with the checksum 5.
nlohmann::ordered_json installed(unsigned id, nlohmann::ordered_json more = nlohmann::ordered_json::object());

// An entry for the element `id` of the I/O board, of version 2.0 with the checksum 6.
nlohmann::ordered_json ioEntry(const std::string& name, unsigned id,
                               nlohmann::ordered_json more = nlohmann::ordered_json::object());
