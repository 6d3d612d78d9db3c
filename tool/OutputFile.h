// Files that a command's result is written to.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>

namespace TrellanTool {

// Has `write` print the content of the file at `path` to a stream.
//
// A regular file gets its content as a whole: at every moment, also after a crash, the path names either what was there
// before or the complete new content. A file that exists keeps its mode, and its owner and group where this process may
// give files away; a link stays one, and what it names is replaced. Another hard link to it keeps the old content. A
// process that is killed leaves nothing behind where the file system has files without a name. What is no regular file
// (a pipe, a device) or is named by one of this process's own descriptors (/dev/stdout) is written to directly, behind
// what is there. A pipe that nobody reads is not waited for.
//
// Throws std::runtime_error that names the file where it cannot be written, and what `write` throws. A regular file is
// as before then.
void writeOutputFile(const std::string& path, const std::function<void(std::ostream&)>& write);

// The same for a file that must not be there yet, not even as a link: then the error is that the file exists. Makes the
// folders that lead to it, and takes them away again where it fails.
void writeNewFile(const std::string& path, const std::function<void(std::ostream&)>& write);

// What errno says of writing to a file, in words.
std::string writingFault(int error);

}  // namespace TrellanTool
