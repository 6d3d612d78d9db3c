// Work on many things by child processes: on all processors, and what goes wrong with one thing concerns no other.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace TrellanTool {

// What is done in children, and what the caller is told of it; `number` counts from 0.
struct ChildWork {
    // In a child, one number after the other. `isFirst`: the child has done nothing yet. Nothing: the number needs a
    // child that has done nothing yet, and will get one; where `isFirst`, it has not been done.
    std::function<std::optional<std::string>(unsigned number, bool isFirst)> result;

    // The result of a number.
    std::function<void(unsigned number, const std::string& result)> done;

    // Why there is no result: what was thrown, or how the child has ended.
    std::function<void(unsigned number, const std::string& why)> hasNotBeenDone;
};

// How many processors this process may use; at least 1.
unsigned usableProcessors();

// Has the work done for each number below `count` by `atOnce` children at a time, each a copy of this process as it is.
// What is to be told is told as it comes, of each number once. A child that is killed, or ends before its work is done,
// has not done the number that it was at; the others go on. A child takes SIGHUP, SIGINT and SIGTERM as the system
// does, unless they are ignored, and does not outlive this process. Afterwards there is no child left, also when this
// throws: std::system_error where no child can be started, and what `done` throws.
//
// To be called while the process has one thread.
void workInChildren(unsigned count, unsigned atOnce, const ChildWork& work);

}  // namespace TrellanTool
