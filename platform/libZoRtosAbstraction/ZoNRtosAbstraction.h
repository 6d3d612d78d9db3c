// ZoNRtosAbstraction: operating-system services of the target. Not thread safe: all calls come from the host's thread.
#pragma once

#include <cstdio>

namespace ZoNRtosAbstraction {

// Suspends the calling thread for at least `microseconds`.
void usleep(unsigned microseconds);

// Writes buffered data of `file`, or of all files when it is null, to the medium. All files are waited for at most
// `timeout` milliseconds, a single one as long as it takes. Returns 0 on success.
int syncFileSystem(std::FILE* file, unsigned timeout);

}  // namespace ZoNRtosAbstraction
