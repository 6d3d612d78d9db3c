// A second updater reads the target, and the inspector compares; here that is worded.
#include "tool/update/Verification.h"

#include <memory>

#include "tool/Streams.h"
#include "tool/documents/ElementOutcome.h"
#include "tool/documents/ElementRecords.h"

namespace TrellanTool {

namespace {

using ZoNTrellanInspector::ZoTState;
using ZoNTrellanInspector::ZoTVerdict;
using ZoNTrellanInspector::ZoTVerification;

// Reads the target as it is now, for the elements that the session's updater has.
class SecondScan {
public:
    explicit SecondScan(const LibrarySession& session)
        : updater(ZoITrellanUpdater::createInstance(scanOptions(session))),
          looking(ZoITrellanInspector::createInstance(*updater)),
          errorsBefore(looking->getGeneralErrorCount())
    {
        updater->setMessageCallBack([](const std::string&) {});
        successful = updater->apply() == 0;
    }

    bool isSuccessful() const { return successful; }
    ZoITrellanInspector& inspector() { return *looking; }

    std::vector<TrellanJson::ordered_json> errors() const
    {
        std::vector<TrellanJson::ordered_json> list;
        for (unsigned i = errorsBefore; i < looking->getGeneralErrorCount(); ++i) {
            list.push_back(errorRecord(looking->getGeneralError(i)));
        }
        return list;
    }

private:
    static ZoNTrellanUpdater::ZoTOptions scanOptions(const LibrarySession& session)
    {
        ZoNTrellanUpdater::ZoTOptions options = session.options();
        options.command = ZoNTrellanUpdater::READ_INVENTORY;
        return options;
    }

    const std::unique_ptr<ZoITrellanUpdater> updater;
    const std::unique_ptr<ZoITrellanInspector> looking;
    const unsigned errorsBefore;  // of the process
    bool successful = false;
};

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
    SecondScan scan(session);
    if (!scan.isSuccessful()) {
        say(err, "the target cannot be read again: nothing is verified");
        result.successful = false;
        result.errors = scan.errors();
        return result;
    }
    inspector.verify(scan.inspector());
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
