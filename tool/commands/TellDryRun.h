// The end of an update that is only asked about.
#pragma once

namespace TrellanTool {

struct Arguments;
struct Streams;
class Preparation;

// Tells on `streams.out`, as text or as a document, what the update would do for which prepare() has given `status`.
// Returns the exit status.
int tellDryRun(const Arguments& arguments, const Preparation& preparation, int status, const Streams& streams);

}  // namespace TrellanTool
