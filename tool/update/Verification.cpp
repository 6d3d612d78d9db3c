// A second updater reads the target, and the inspector compares; here that is worded.
#include "tool/update/Verification.h"

#include <memory>

#include "tool/Streams.h"
#include "tool/documents/ElementRecords.h"

namespace TrellanTool {

namespace {

using ZoNTrellanInspector::ZoTState;
using ZoNTrellanInspector::ZoTVerdict;
using ZoNTrellanInspector::ZoTVerification;

// The target as it is now, for the elements that the session's updater has. Null when it cannot be read.
std::unique_ptr<ZoITrellanUpdater> scannedAgain(const LibrarySession& session)
{
    ZoNTrellanUpdater::ZoTOptions options = session.options();
    options.command = ZoNTrellanUpdater::READ_INVENTORY;
    std::unique_ptr<ZoITrellanUpdater> updater(ZoITrellanUpdater::createInstance(options));
    updater->setMessageCallBack([](const std::string&) {});
    return updater->apply() == 0 ? std::move(updater) : nullptr;
}

std::optional<bool> told(ZoTVerdict verdict)
{
    switch (verdict) {
        case ZoTVerdict::AGREES:
            return true;
        case ZoTVerdict::DIFFERS:
            return false;
        default:
            return std::nullopt;
    }
}

// What the target has, and what the file.
std::string comparison(const ZoTVerification& verification)
{
    return verification.byChecksum ? "checksum " + std::to_string(verification.foundChecksum) + ", not " +
                                         std::to_string(verification.fileChecksum)
                                   : "version " + verification.foundVersion + ", not " + verification.fileVersion;
}

// What is to be said of an element that was updated; empty: nothing.
std::string wording(const ZoTVerification& verification)
{
    switch (verification.verdict) {
        case ZoTVerdict::AGREES:
            return "";
        case ZoTVerdict::DIFFERS:
            return "does not have its file's content: " + comparison(verification);
        case ZoTVerdict::NOT_LISTED:
            return "cannot be verified, since the target does not list it";
        case ZoTVerdict::AFTER_RESTART:
            return "cannot be verified before a restart, with which it may become active: " + comparison(verification);
        default:
            return "cannot be verified, since neither checksums nor versions can be compared";
    }
}

}  // namespace

Verification verifyUpdate(LibrarySession& session, std::ostream& err)
{
    ZoITrellanInspector& inspector = session.inspector();
    const ElementRecords elements(session.updater(), inspector, true);
    Verification result;
    result.verified.resize(elements.count());
    const std::unique_ptr<ZoITrellanUpdater> updater = scannedAgain(session);
    if (updater == nullptr) {
        say(err, "the target cannot be read again: nothing is verified");
        result.successful = false;
        return result;
    }
    const std::unique_ptr<ZoITrellanInspector> rescanned(ZoITrellanInspector::createInstance(*updater));
    inspector.verify(*rescanned);
    for (unsigned i = 0; i < elements.count(); ++i) {
        if (inspector.getElement(i).state != ZoTState::UPDATED) {
            continue;
        }
        const ZoTVerification& verification = inspector.getVerification(i);
        result.verified[i] = told(verification.verdict);
        result.successful = result.successful && verification.verdict != ZoTVerdict::DIFFERS;
        if (const std::string words = wording(verification); !words.empty()) {
            say(err, elements.listed(i).displayName + " " + words);
        }
    }
    return result;
}

}  // namespace TrellanTool
