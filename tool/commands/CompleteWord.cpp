#include <ostream>

#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/commands/Actions.h"
#include "tool/completion/Completion.h"

namespace TrellanTool {

int completeWord(const Arguments& arguments, const Streams& streams)
{
    constexpr const char* kinds[] = {"words", "list", "files", "folders"};  // in the order of Completion::Kind
    const Completion completion = completionOf(arguments.operands);
    streams.out << kinds[completion.kind] << "\n";
    for (const Candidate& candidate : completion.candidates) {
        streams.out << candidate.word << "\t" << candidate.meaning << "\n";
    }
    return SUCCESS;
}

}  // namespace TrellanTool
