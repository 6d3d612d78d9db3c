// What the host's tests share: the loaded library, and a target with two elements.
//
// This program is not linked with the library: it is loaded at run time and reached through its factories only.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "ZoITrellanInspector.h"
#include "ZoITrellanUpdater.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "support/UpdaterOptions.h"

// The library, loaded for the time of a scope. Its updaters must be gone before.
class Library {
public:
    Library();
    ~Library();
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    // Call the factories.
    std::unique_ptr<ZoITrellanUpdater> create(const ZoNTrellanUpdater::ZoTOptions& options) const;
    std::unique_ptr<ZoITrellanInspector> inspect(ZoITrellanUpdater& updater) const;

private:
    using Factory = ZoITrellanUpdater*(ZoNTrellanUpdater::ZoTOptions);
    using InspectorFactory = ZoITrellanInspector*(ZoITrellanUpdater&);

    void* find(const char* symbol) const;

    void* handle;
    Factory* factory = nullptr;
    InspectorFactory* inspectorFactory = nullptr;
};

// A board with a firmware (id 1) and an FPGA (id 2), version 1.0, checksum 5.
nlohmann::ordered_json twoElements();

// "firmware.bin" and "fpga.bin" for them, the second one in a later phase.
nlohmann::ordered_json twoFiles();

// A test that begins with an empty master error list.
class Host : public testing::Test {
protected:
    Host() { clearErrors(); }
    ~Host() override { clearErrors(); }

    static void clearErrors() { ZoCErrorManager::getSingleton()->getMasterErrorList().clear(); }
};
