#include "support/SimulatedTarget.h"

#include <stdlib.h>

#include <fstream>
#include <string>

using nlohmann::ordered_json;

SimulatedTarget::SimulatedTarget(const ordered_json& document)
{
    directory.write("target.json", document.dump(2) + "\n");
    ::setenv("TRELLAN_TARGET", path().c_str(), 1);
    ::setenv("TRELLAN_TRACE", (directory.path() / "trace.jsonl").c_str(), 1);
}

SimulatedTarget::~SimulatedTarget()
{
    ::unsetenv("TRELLAN_TRACE");
    ::unsetenv("TRELLAN_TARGET");
}

ordered_json SimulatedTarget::document() const
{
    std::ifstream stream(path());
    return ordered_json::parse(stream);
}

std::vector<ordered_json> SimulatedTarget::trace() const
{
    std::vector<ordered_json> calls;
    std::ifstream stream(directory.path() / "trace.jsonl");
    for (std::string line; std::getline(stream, line);) {
        calls.push_back(ordered_json::parse(line));
    }
    return calls;
}
