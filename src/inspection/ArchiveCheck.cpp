// The inspector's check of a whole archive: the description is read as far as it can be, and every rule looks at it.
#include <algorithm>
#include <deque>
#include <iterator>
#include <set>
#include <stdexcept>

#include "archive/DescriptionRules.h"
#include "archive/Properties.h"
#include "inspection/Check.h"
#include "inspection/FileContent.h"
#include "inspection/Rules.h"
#include "inspection/ZoCTrellanInspector.h"

using namespace ZoNTrellanInspector;
using namespace ZoNUpdateArchive;
using namespace ZoNUpdateInspection;

namespace {

using Severity = Check::Severity;

Check::Files pointersTo(const std::vector<ZoSUpdateFile>& files)
{
    Check::Files pointers;
    std::transform(files.begin(), files.end(), std::back_inserter(pointers),
                   [](const ZoSUpdateFile& file) { return &file; });
    return pointers;
}

// Checks what is refused or passed over as it comes: no list of it is kept.
class ArchiveSurvey final : public DescriptionSurvey {
public:
    explicit ArchiveSurvey(Check& check)
        : check(check),
          ofNames(check.further({})),
          ofContents(check.further({})),
          ofNumbers(check.further({})),
          contents(ofContents, Depth::content)
    {
    }

    void takeUnread(const std::string& message) override
    {
        check.report("syntax", Severity::ERROR, withoutHeading(message));
    }

    void takeFault(const DescriptionFault& fault, const ZoSUpdateFile& file) override
    {
        ZoTFinding& finding = check.report("structure", Severity::ERROR, withoutHeading(fault.message));
        finding.entry = fault.entry;
        finding.board = fault.board;
        finding.name = nameInFindings(file);
        finding.isInDescription = true;
        finding.pointer = fault.pointer;
    }

    void takeRefused(ZoSUpdateFile file) override
    {
        refused.push_back(std::move(file));
        if (refused.size() == atOnce) {
            checkRefused();
        }
    }

    void takePassedOver(const ZoSUpdateFile& file) override
    {
        check.report("unsupported-entry", Severity::WARNING, {file, "featureLevel"},
                     "this library passes over the entry, since its \"featureLevel\" asks for a newer one: update the "
                     "library, or leave the entry to newer ones");
        noteKnown(file);
    }

    // What is left to be checked of refused entries, once all have been taken.
    void finish(const ReadProgress& progress)
    {
        checkRefused();
        contents.read(progress);
        check.add(std::move(ofNames));
        check.add(std::move(ofContents));
        check.add(std::move(ofNumbers));
    }

    // The files that belong to the archive.
    void noteKnown(const ZoSUpdateFile& file) { known.add(check.getArchive().pathOf(file)); }

    KnownFiles known;

private:
    static constexpr std::size_t atOnce = 256;

    // An entry that is refused is not compared with others, but its file is looked at as far as it is known.
    void checkRefused()
    {
        ofNumbers.setFiles(pointersTo(refused));
        checkNumbers(ofNumbers);
        std::erase_if(refused, [](const ZoSUpdateFile& file) { return !hasString(file.jsonEntry, "name"); });
        ofNames.setFiles(pointersTo(refused));
        checkNames(ofNames);
        for (ZoSUpdateFile& file : refused) {
            noteKnown(file);
            toRead.push_back(std::move(file));
            if (!contents.look(toRead.back())) {
                toRead.pop_back();
            }
        }
        refused.clear();
    }

    Check& check;
    Check ofNames, ofContents, ofNumbers;
    std::vector<ZoSUpdateFile> refused;
    std::deque<ZoSUpdateFile> toRead;
    ContentCheck contents;
};

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
    findings = ZoNUpdateBase::FindingList();
    ZoCUpdateArchive archive(&updater, &updater.getOptions());
    Check check(archive, {});
    ArchiveSurvey survey(check);
    const DescriptionState state = archive.survey(survey);
    checkDescription(check);
    if (state == DescriptionState::read) {
        check.setFiles(pointersTo(archive.getUpdateFileList()));
        checkNumbers(check);
        checkNames(check);
        checkTargetPaths(check);
        checkPathCollisions(check);
        checkReach(check);
        checkContents(check, Depth::everything, report);
        survey.finish(report);
        survey.known.add(archive.descriptionPath());
        for (const ZoSUpdateFile* const file : check.getFiles()) {
            survey.noteKnown(*file);
        }
        checkFolder(check, survey.known);
    }
    findings = check.takeFindings();
    return toDescription(state);
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
