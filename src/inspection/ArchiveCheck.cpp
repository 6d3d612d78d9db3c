// The inspector's check of a whole archive: the description is read as far as it can be, and every rule looks at it.
#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "archive/DescriptionRules.h"
#include "archive/Properties.h"
#include "base/PlatformText.h"
#include "inspection/Check.h"
#include "inspection/Rules.h"
#include "inspection/ZoCTrellanInspector.h"

using namespace ZoNTrellanInspector;
using namespace ZoNUpdateArchive;
using namespace ZoNUpdateInspection;
using ZoNUpdateBase::allText;

namespace {

using Severity = Check::Severity;

// The name that a refused entry states.
std::string nameOf(const DescriptionSurvey& survey, std::int32_t entry)
{
    const auto found = std::lower_bound(
        survey.refused.begin(), survey.refused.end(), entry,
        [](const ZoSUpdateFile& file, std::int32_t number) { return static_cast<std::int32_t>(file.entry) < number; });
    const bool isRefused = found != survey.refused.end() && static_cast<std::int32_t>(found->entry) == entry;
    return isRefused ? allText(found->name) : std::string();
}

void reportFaults(Check& check, const DescriptionSurvey& survey)
{
    const bool isJson = survey.state == DescriptionState::read;
    for (const DescriptionFault& fault : survey.faults) {
        ZoTFinding& finding =
            check.report(isJson ? "structure" : "syntax", Severity::ERROR, withoutHeading(fault.message));
        finding.entry = fault.entry;
        finding.board = fault.board;
        finding.name = nameOf(survey, fault.entry);
        finding.isInDescription = isJson;
        finding.pointer = fault.pointer;
    }
}

void reportPassedOver(Check& check, const DescriptionSurvey& survey)
{
    for (const ZoSUpdateFile& file : survey.passedOver) {
        check.report("unsupported-entry", Severity::WARNING, {file, "featureLevel"},
                     "this library passes over the entry, since its \"featureLevel\" asks for a newer one: update the "
                     "library, or leave the entry to newer ones");
    }
}

Check::Files pointersTo(const std::vector<ZoSUpdateFile>& files)
{
    Check::Files pointers;
    std::transform(files.begin(), files.end(), std::back_inserter(pointers),
                   [](const ZoSUpdateFile& file) { return &file; });
    return pointers;
}

// An entry that is refused is not compared with others, but its file is looked at as far as it is known.
Check::Findings findingsOfRefused(const ZoCUpdateArchive& archive, const DescriptionSurvey& survey,
                                  const ReadProgress& progress)
{
    const auto lacksName = [](const ZoSUpdateFile* file) { return !hasString(file->jsonEntry, "name"); };
    Check::Files files = pointersTo(survey.refused);
    Check ofNumbers(archive, files);
    checkNumbers(ofNumbers);
    files.erase(std::remove_if(files.begin(), files.end(), lacksName), files.end());
    Check check(archive, std::move(files));
    checkNames(check);
    checkContents(check, Depth::content, progress);
    check.add(ofNumbers.takeFindings());
    return check.takeFindings();
}

// Where the files are that belong to the archive.
std::vector<std::string> knownPaths(const ZoCUpdateArchive& archive, const DescriptionSurvey& survey)
{
    std::vector<std::string> paths{archive.descriptionPath()};
    for (const auto* const files : {&archive.getUpdateFileList(), &survey.refused, &survey.passedOver}) {
        std::transform(files->begin(), files->end(), std::back_inserter(paths),
                       [&](const ZoSUpdateFile& file) { return archive.pathOf(file); });
    }
    return paths;
}

ZoTDescription toDescription(DescriptionState state)
{
    switch (state) {
        case DescriptionState::notOpened:
            return ZoTDescription::NOT_OPENED;
        case DescriptionState::noJson:
            return ZoTDescription::NO_JSON;
        default:
            return ZoTDescription::READ;
    }
}

DescriptionObject toObject(ZoTDescriptionObject object)
{
    switch (object) {
        case ZoTDescriptionObject::WHOLE:
            return DescriptionObject::whole;
        case ZoTDescriptionObject::INFO:
            return DescriptionObject::info;
        case ZoTDescriptionObject::ENTRY:
            return DescriptionObject::entry;
        case ZoTDescriptionObject::BOARD:
            return DescriptionObject::board;
    }
    throw std::out_of_range("ZoITrellanInspector: there is no such object");
}

}  // namespace

ZoTDescription ZoCTrellanInspector::checkArchive(ZoTReadProgress progress, void* context)
{
    const ReadProgress report = [&](std::uint64_t read, std::uint64_t all) {
        if (progress != nullptr) {
            progress(context, read, all);
        }
    };
    findings.clear();
    ZoCUpdateArchive archive(&updater, &updater.getOptions());
    const DescriptionSurvey survey = archive.survey();
    Check check(archive, pointersTo(archive.getUpdateFileList()));
    reportFaults(check, survey);
    checkDescription(check);
    if (survey.state == DescriptionState::read) {
        reportPassedOver(check, survey);
        checkNumbers(check);
        checkNames(check);
        checkTargetPaths(check);
        checkPathCollisions(check);
        checkReach(check);
        checkContents(check, Depth::everything, report);
        check.add(findingsOfRefused(archive, survey, report));
        checkFolder(check, knownPaths(archive, survey));
    }
    findings = check.takeFindings();
    return toDescription(survey.state);
}

unsigned ZoCTrellanInspector::getMemberCount(ZoTDescriptionObject object)
{
    return static_cast<unsigned>(membersOf(toObject(object)).size());
}

const std::string& ZoCTrellanInspector::getMember(ZoTDescriptionObject object, unsigned position)
{
    member = membersOf(toObject(object)).at(position);
    return member;
}
