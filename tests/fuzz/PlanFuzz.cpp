// Fuzz entry for plans, as they are and, so that what a plan says is looked at too, with the digest that belongs to
// them: nothing is done unless a plan says what the dry run does.
#include <nlohmann/json.hpp>

#include "FuzzedTarget.h"
#include "Fuzzing.h"
#include "PlannedUpdate.h"
#include "ToolRun.h"
#include "support/TextFile.h"

using nlohmann::ordered_json;

namespace {

void updateByPlan(const std::string& text)
{
    const FuzzedTarget target(plannedDevice);
    const std::string planned = plannedArchive();
    const MemoryFile file(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    static const ordered_json truth = ordered_json::parse(runTool({"update", planned, "--dry-run", "--json"}).out);
    const ToolRun run = runTool({"update", planned, "--plan", file.path(), "--json"});
    require(run.status == 0 || run.status == 6, "a plan holds, or nothing is done");
    if (run.status == 6) {
        require(readText(target.path()) == plannedDevice, "nothing is done");
    } else {
        require(whatIsFixed(ordered_json::parse(text), truth) == whatIsFixed(truth, truth),
                "a plan that holds says what is");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = textOf(data, size);
    updateByPlan(text);
    const auto plan = ordered_json::parse(text, nullptr, false);
    if (plan.is_object() && plan.contains("digest")) {
        updateByPlan(withDigest(plan));
    }
    return 0;
}
