#include "ToolRun.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "Fuzzing.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "simulation/base/Resources.h"
#include "tool/Run.h"

static void checkDocument(const ToolRun& run, const std::string& command)
{
    const auto document = nlohmann::ordered_json::parse(run.out, nullptr, false);
    require(document.is_object() && document.size() >= 2, "--json gives one JSON document");
    const auto second = std::next(document.begin());
    require(document.begin().key() == "schemaVersion" && *document.begin() == 1,
            "its first member is the schema's version");
    const bool isOfTheCommand = *second == command;
    const bool isAskedForInstead = run.status == 0 && (*second == "help" || *second == "--version");
    require(second.key() == "command" && (isOfTheCommand || isAskedForInstead), "its second member is the command");
    const bool isRefusal = run.status >= 3 && run.status != 10;
    require(document.contains("error") == isRefusal, "an error stands in it where the run was refused");
    require(!isRefusal || document["error"]["status"] == run.status, "the error has the exit status");
}

ToolRun runTool(const std::vector<std::string>& words)
{
    std::cerr.rdbuf(nullptr);
    std::vector<const char*> pointers = {"trellan-update"};
    for (const std::string& word : words) {
        pointers.push_back(word.c_str());
    }
    std::ostringstream out;
    std::ostringstream err;
    const int status = TrellanTool::run(static_cast<int>(pointers.size()), pointers.data(), out, err);
    ZoCErrorManager::getSingleton()->getMasterErrorList().clear();
    const auto left = TrellanSimulation::resources();
    require(left.errorLists == 0 && left.inventoryTrees == 0 && left.locks == 0, "nothing is left over");
    const ToolRun run = {status, out.str(), err.str()};
    constexpr int wrongUsage = 2;
    const bool isCarriedOut = status != wrongUsage && words.front() != "complete";  // that takes options for words
    if (isCarriedOut && std::find(words.begin(), words.end(), "--json") != words.end()) {
        checkDocument(run, words.front());
    }
    return run;
}
