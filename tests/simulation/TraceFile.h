// TraceFile: a trace of a test's own, for the time of a scope.
#pragma once

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "support/TempDir.h"

class TraceFile {
public:
    // Names a file that does not exist yet in TRELLAN_TRACE. One at a time.
    TraceFile() { setenv("TRELLAN_TRACE", path().c_str(), 1); }
    ~TraceFile() { unsetenv("TRELLAN_TRACE"); }
    TraceFile(const TraceFile&) = delete;
    TraceFile& operator=(const TraceFile&) = delete;

    std::string path() const { return directory.path() / "trace.jsonl"; }

    // What the file holds; empty when there is none.
    std::string text() const
    {
        std::ostringstream content;
        content << std::ifstream(path()).rdbuf();
        return content.str();
    }

private:
    TempDir directory;
};
