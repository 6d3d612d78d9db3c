#include "Hosting.h"

#include <dlfcn.h>

#include <stdexcept>

#include "support/BuildTree.h"

using nlohmann::ordered_json;
using namespace ZoNTrellanUpdater;

namespace {

ordered_json element(unsigned id, const std::string& name)
{
    return updateElement(id, {{"NAME", name}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 5}});
}

}  // namespace

Library::Library() : handle(::dlopen(TRELLAN_LIBRARY, RTLD_NOW | RTLD_LOCAL))
{
    if (handle == nullptr) {
        throw std::runtime_error(::dlerror());
    }
    factory =
        reinterpret_cast<Factory*>(find("_ZN17ZoITrellanUpdater14createInstanceEN17ZoNTrellanUpdater10ZoTOptionsE"));
    inspectorFactory =
        reinterpret_cast<InspectorFactory*>(find("_ZN19ZoITrellanInspector14createInstanceER17ZoITrellanUpdater"));
}

void* Library::find(const char* symbol) const
{
    void* const found = ::dlsym(handle, symbol);
    if (found == nullptr) {
        throw std::runtime_error(::dlerror());
    }
    return found;
}

Library::~Library()
{
    EXPECT_EQ(::dlclose(handle), 0);
}

std::unique_ptr<ZoITrellanUpdater> Library::create(const ZoTOptions& options) const
{
    return std::unique_ptr<ZoITrellanUpdater>(factory(options));
}

std::unique_ptr<ZoITrellanInspector> Library::inspect(ZoITrellanUpdater& updater) const
{
    return std::unique_ptr<ZoITrellanInspector>(inspectorFactory(updater));
}

ordered_json twoElements()
{
    return target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/NAME", "Board"}},
                         {element(1, "UserFirmware"), element(2, "UserFpga")})});
}

ordered_json twoFiles()
{
    return description({fileEntry("firmware.bin"), fileEntry("fpga.bin", {{"id", 2}, {"sequence", 2}})});
}
