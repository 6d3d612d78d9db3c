// Creation and destruction of the updater, and the small things it knows of itself.
#include "assignment/ZoCUpdateAssignment.h"
#include "base/PlatformText.h"
#include "operation/ZoCUpdateOperation.h"
#include "updater/ZoCTrellanUpdater.h"

ZoITrellanUpdater* ZoITrellanUpdater::createInstance(ZoNTrellanUpdater::ZoTOptions options)
{
    return std::make_unique<ZoCTrellanUpdater>(std::move(options)).release();
}

ZoCTrellanUpdater::ZoCTrellanUpdater(ZoNTrellanUpdater::ZoTOptions givenOptions)
    : options(std::move(givenOptions)),
      archive(std::make_unique<ZoCUpdateArchive>(this, &options)),
      inventory(std::make_unique<ZoCUpdateInventory>(*this, options)),
      assignment(std::make_unique<ZoCUpdateAssignment>(*this, options, *archive, *inventory)),
      operation(std::make_unique<ZoCUpdateOperation>(this, &options, assignment.get()))
{
}

ZoCTrellanUpdater::~ZoCTrellanUpdater() = default;

void ZoCTrellanUpdater::setPhaseCallBack(void (*callBack)(unsigned))
{
    phaseCallBack = callBack;
}

void ZoCTrellanUpdater::setFailureCallBack(void (*callBack)(unsigned))
{
    failureCallBack = callBack;
}

void ZoCTrellanUpdater::setProgressCallBack(void (*callBack)(unsigned))
{
    progressCallBack = callBack;
}

void ZoCTrellanUpdater::setMessageCallBack(void (*callBack)(const std::string&))
{
    messageCallBack = callBack;
}

void ZoCTrellanUpdater::ReportPhase(unsigned phase) const
{
    if (phaseCallBack != nullptr) {
        phaseCallBack(phase);
    }
}

void ZoCTrellanUpdater::ReportFailure(unsigned elementIndex) const
{
    if (failureCallBack != nullptr) {
        failureCallBack(elementIndex);
    }
}

void ZoCTrellanUpdater::ReportProgress(unsigned percent) const
{
    if (progressCallBack != nullptr) {
        progressCallBack(percent);
    }
}

void ZoCTrellanUpdater::ReportMessage(const std::string& message) const
{
    if (messageCallBack != nullptr) {
        messageCallBack(message);
    }
}

unsigned ZoCTrellanUpdater::getArchiveId()
{
    return 0;
}

ZoCVersion ZoCTrellanUpdater::getToolVersion()
{
    return ZoCVersion(TRELLAN_VERSION_MAJOR, TRELLAN_VERSION_MINOR, TRELLAN_VERSION_PATCH, 0, 0, 0);
}

ZoCString ZoCTrellanUpdater::getIpAddress() const
{
    return ZoCString("127.0.0.1");
}

ZoCString ZoCTrellanUpdater::tstring2ZoCString(const std::string& text)
{
    return ZoNUpdateBase::platformText(text);
}

std::string ZoCTrellanUpdater::ZoCString2tstring(const ZoCString& text)
{
    return ZoNUpdateBase::textBeforeNul(text);
}
