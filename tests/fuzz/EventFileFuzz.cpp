// Fuzz entry for files of events: each is read, with one line for each run, and what cannot be is named.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "Fuzzing.h"
#include "ToolRun.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile file(data, size);
    const ToolRun text = runTool({"history", file.path()});
    const ToolRun document = runTool({"history", file.path(), "--json"});
    require(text.status == 0 && document.status == 0, "a file of events can be read whatever it holds");
    const auto runs = nlohmann::json::parse(document.out)["runs"];
    require(static_cast<std::size_t>(std::count(text.out.begin(), text.out.end(), '\n')) == runs.size(),
            "a run is a line");
    for (const auto& run : runs) {
        const auto& result = run["result"];
        require(result == "success" || result == "failed" || result == "interrupted" || result == "stalled" ||
                    result == "refused",
                "a run has one of five results");
    }
    std::string_view said = text.err;
    while (!said.empty()) {
        require(takePart(said, '\n').starts_with("trellan-update: "), "each line begins with the tool's name");
    }
    return 0;
}
