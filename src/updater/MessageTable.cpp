// The library's message table: known to the error manager for as long as the library is loaded.
#include "base/Messages.h"
#include "libZoErrorHandling/ZoCErrorManager.h"

namespace ZoTrellanUpdateLib {
namespace {

constexpr const char* texts[] = {
    "Firmware update: %1...",
    "The firmware archive contains additional elements, which are not supported by the previous firmware version. "
    "Reboot the device to activate the new firmware. Then repeat the update to check if additional elements need to be "
    "updated.",
};

constexpr ZoResText messageTable{texts, "", 1, ZoNUpdateBase::updateStarted};

}  // namespace

class ZoCErrMsgResourceHandler {
public:
    ZoCErrMsgResourceHandler() { ZoCErrorManager::_registerMessages(messageTable); }
    ~ZoCErrMsgResourceHandler() { ZoCErrorManager::_unregisterMessages(messageTable); }
    ZoCErrMsgResourceHandler(const ZoCErrMsgResourceHandler&) = delete;
    ZoCErrMsgResourceHandler& operator=(const ZoCErrMsgResourceHandler&) = delete;
};

namespace {

// NOLINTNEXTLINE(cert-err58-cpp): the platform is told while the library is loaded
const ZoCErrMsgResourceHandler messageRegistration;

}  // namespace
}  // namespace ZoTrellanUpdateLib
