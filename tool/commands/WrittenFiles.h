// The files that options name to be written must not be what the command reads: that would be spoilt, or lost.
#pragma once

class ZoITrellanInspector;

namespace TrellanTool {

struct Arguments;

// Throws UsageError where a file to be written is the target file (of coverage: one of them), the archive's description
// or the plan, by whatever path or link. The result of `describe` may replace the description: it is whole by then.
void keepFromWriting(const Arguments& arguments);

// The same for the update files of the archive that `archive` has read. Does not concern the trace, which has begun.
void keepFromWriting(const Arguments& arguments, ZoITrellanInspector& archive);

}  // namespace TrellanTool
