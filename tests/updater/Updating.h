// What the tests of the updater share: a target with one processor board, an archive for it, and what became of them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ZoITrellanUpdater.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "support/MessageCapture.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "support/UpdaterOptions.h"
#include "updater/ZoCTrellanUpdater.h"

// A test that begins with an empty master error list.
class Updating : public testing::Test {
protected:
    Updating() { masterErrors().clear(); }
    ~Updating() override { masterErrors().clear(); }

    static ZoCErrorListPool& masterErrors() { return ZoCErrorManager::getSingleton()->getMasterErrorList(); }
};

// An HCN "Processor board" of type KR5120 with `elements`, and `items` below it.
nlohmann::ordered_json processorBoard(std::vector<nlohmann::ordered_json> elements,
                                      std::vector<nlohmann::ordered_json> items = {});

// An active UserFirmware of version 23.2 with the id `id` and the checksum 5; labelled "Processor board, Firmware".
nlohmann::ordered_json installedFirmware(unsigned id = 1);

// A target with a processor board and its firmware.
nlohmann::ordered_json processorTarget();

// The file entry "firmware.bin" of version 23.3 for the processor board's firmware.
nlohmann::ordered_json firmwareEntry(nlohmann::ordered_json overrides = nlohmann::ordered_json::object());

// The messages behind the banner, which is the first one.
std::vector<std::string> afterBanner(const MessageCapture& capture);

// The calls of `name` in `trace`.
std::vector<nlohmann::ordered_json> callsOf(const std::string& name, const std::vector<nlohmann::ordered_json>& trace);

// The updater's elements, its list released.
std::vector<ZoNTrellanUpdater::ZoTUpdateElement> elementsOf(ZoITrellanUpdater& updater);

// The updater's update files, its list released.
std::vector<ZoNTrellanUpdater::ZoTUpdateFile> filesOf(ZoITrellanUpdater& updater);
