// The command that tells why elements get the files that they get, and why others do not fit.
#include <algorithm>
#include <ostream>

#include "json/Json.h"
#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"
#include "tool/documents/Document.h"
#include "tool/documents/DocumentWriter.h"
#include "tool/documents/Explanations.h"

namespace TrellanTool {

namespace {

// What is to be explained: indices of elements, and positions in the library's list of files.
struct Questions {
    std::vector<unsigned> elements;
    std::vector<unsigned> files;
    std::string missing;  // what was asked for that there is not, in lines

    void miss(const std::string& line, std::ostream& err)
    {
        say(err, line);
        missing += (missing.empty() ? "" : "\n") + line;
    }
};

void askForElements(Questions& questions, const Arguments& arguments, unsigned count, std::ostream& err)
{
    if (arguments.explainedElements.empty() && arguments.explainedFiles.empty()) {
        for (unsigned i = 0; i < count; ++i) {
            questions.elements.push_back(i);
        }
    }
    for (const std::uint32_t index : arguments.explainedElements) {
        if (index < count) {
            questions.elements.push_back(index);
        } else {
            questions.miss("there is no element " + std::to_string(index) +
                               (count == 0 ? "; there is none" : "; there are 0 to " + std::to_string(count - 1)),
                           err);
        }
    }
}

void askForFiles(Questions& questions, const Arguments& arguments, ZoITrellanInspector& inspector, std::ostream& err)
{
    for (const std::uint32_t entry : arguments.explainedFiles) {
        unsigned position = 0;
        while (position < inspector.getFileCount() && inspector.getFile(position).entry != entry) {
            ++position;
        }
        if (position < inspector.getFileCount()) {
            questions.files.push_back(position);
        } else {
            questions.miss("the archive has no entry files[" + std::to_string(entry) + "] that this library reads",
                           err);
        }
    }
}

void writeDocument(std::ostream& out, const Arguments& arguments, const Questions& questions,
                   Explanations& explanations)
{
    DocumentWriter writer(out, arguments.command->name);
    if (const DocumentError error = {FAILURE, questions.missing}; !error.message.empty()) {
        writer.error(&error);
    }
    if (!arguments.explainedElements.empty() || arguments.explainedFiles.empty()) {
        writer.list("elements", static_cast<unsigned>(questions.elements.size()),
                    [&](unsigned i) { return explanations.element(questions.elements[i]); });
    }
    if (!arguments.explainedFiles.empty()) {
        writer.list("files", static_cast<unsigned>(questions.files.size()),
                    [&](unsigned i) { return explanations.file(questions.files[i]); });
    }
    writer.end();
}

}  // namespace

int explain(const Arguments& arguments, const Streams& streams)
{
    LibrarySession session(arguments, streams.err);
    if (const int status = session.apply(streams.err); status != SUCCESS) {
        if (arguments.json) {
            writeErrorDocument(streams.out, *arguments.command, {status, session.refusal()});
        }
        return status;
    }
    Explanations explanations(session.updater(), session.inspector(), session.options().force);
    Questions questions;
    askForElements(questions, arguments, explanations.elementCount(), streams.err);
    askForFiles(questions, arguments, session.inspector(), streams.err);
    if (arguments.json) {
        writeDocument(streams.out, arguments, questions, explanations);
    } else {
        for (const unsigned index : questions.elements) {
            explanations.printElement(streams.out, index);
        }
        for (const unsigned position : questions.files) {
            explanations.printFile(streams.out, position);
        }
    }
    return questions.missing.empty() ? SUCCESS : FAILURE;
}

}  // namespace TrellanTool
