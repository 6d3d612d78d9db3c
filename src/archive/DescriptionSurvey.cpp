// Reading of the archive description file by those who want to know all that is wrong with it.
#include <optional>
#include <utility>

#include "archive/DescriptionRules.h"
#include "archive/ObjectMembers.h"
#include "archive/Properties.h"
#include "archive/ZoCUpdateArchive.h"

using namespace ZoNUpdateArchive;

namespace {

ZoSUpdateFile nameOnly(const ObjectMembers& entry, std::uint32_t number)
{
    ZoSUpdateFile file;
    file.entry = number;
    file.jsonEntry = entry.object();
    if (entry.hasString(Property::name)) {
        file.name = toString(entry[Property::name]);
    }
    return file;
}

ZoSUpdateFile asFarAsSound(const ObjectMembers& entry, std::uint32_t number)
{
    ZoSUpdateFile file = nameOnly(entry, number);
    file.hasTargetPath = statesTargetPath(entry);
    if (entry.hasUnsigned(Property::checksumCrc32)) {
        file.checksumCrc32 = static_cast<unsigned>(entry[Property::checksumCrc32]);
    }
    file.statesChecksum = file.checksumCrc32 != notAvailable;
    return file;
}

}  // namespace

DescriptionState ZoCUpdateArchive::survey(DescriptionSurvey& taker)
{
    files.clear();
    ++generation;
    ZoNJson::json document;
    std::string message;
    const DescriptionState state = readDocument(descriptionPath(), document, message);
    if (state != DescriptionState::read) {
        taker.takeUnread(message);
        return state;
    }
    const ZoSUpdateFile none;
    std::optional<ZoSUpdateFile> refused;  // the present entry, once it has a fault
    const ObjectMembers* present = nullptr;
    const DescriptionRules surveyRules([&](const DescriptionFault& fault) {
        if (present != nullptr && !refused) {
            refused = asFarAsSound(*present, static_cast<std::uint32_t>(fault.entry));
        }
        taker.takeFault(fault, refused ? *refused : none);
        return true;
    });
    readInfo(document, surveyRules);
    if (!surveyRules.checkFiles(document)) {
        return state;
    }
    std::uint32_t number = 0;
    for (const ObjectMembers entry : document["files"]) {
        present = &entry;
        switch (surveyRules.checkEntry(entry, number)) {
            case EntryVerdict::accepted:
                addFile(entry, number);
                break;
            case EntryVerdict::passedOver:
                taker.takePassedOver(nameOnly(entry, number));
                break;
            case EntryVerdict::refused:
                taker.takeRefused(std::move(*refused));
                break;
        }
        refused.reset();
        ++number;
    }
    return state;
}
