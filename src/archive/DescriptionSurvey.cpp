// Reading of the archive description file by those who want to know all that is wrong with it.
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

DescriptionSurvey ZoCUpdateArchive::survey()
{
    DescriptionSurvey survey;
    const DescriptionRules surveyRules([&](const DescriptionFault& fault) {
        survey.faults.push_back(fault);
        return true;
    });
    files.clear();
    ++generation;
    ZoNJson::json document;
    std::string message;
    survey.state = readDocument(descriptionPath(), document, message);
    if (survey.state != DescriptionState::read) {
        survey.faults.push_back({-1, -1, "", message});
        return survey;
    }
    readInfo(document, surveyRules);
    if (!surveyRules.checkFiles(document)) {
        return survey;
    }
    std::uint32_t number = 0;
    for (const ObjectMembers entry : document["files"]) {
        switch (surveyRules.checkEntry(entry, number)) {
            case EntryVerdict::accepted:
                addFile(entry, number);
                break;
            case EntryVerdict::passedOver:
                survey.passedOver.push_back(nameOnly(entry, number));
                break;
            case EntryVerdict::refused:
                survey.refused.push_back(asFarAsSound(entry, number));
                break;
        }
        ++number;
    }
    return survey;
}
