#include "faults/FaultyTool.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <system_error>

namespace fs = std::filesystem;
using FaultPoints::Kind;

namespace {

bool holds(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

// Whether one of the lines is a reason without what it is the reason of.
bool isBare(const std::string& errors)
{
    constexpr int reasons[] = {EACCES, EAGAIN, EBUSY,  EINTR,  EINVAL, EIO,       EMFILE,      ENOENT,
                               ENOLCK, ENOMEM, ENOSPC, ENOTTY, EPERM,  EOVERFLOW, EWOULDBLOCK, ESPIPE};
    return holds("\n" + errors, "\ntrellan-update: std::") ||
           std::any_of(std::begin(reasons), std::end(reasons), [&errors](int reason) {
               return holds("\n" + errors, "\ntrellan-update: " + std::generic_category().message(reason) + "\n");
           });
}

}  // namespace

FaultyTool::FaultyTool()
{
    device.putOld();
    const std::vector<std::string> update = {"update", "archive", "--target", "target.json"};
    std::vector<std::string> planning = update;
    planning.insert(planning.end(), {"--dry-run", "--json"});
    std::ofstream(device.folder() / "plan") << runProcess(TRELLAN_FAULTY_TOOL, planning, device.folder()).output;
    std::vector<std::string> updating = update;
    updating.insert(updating.end(), {"--events", "past"});
    runProcess(TRELLAN_FAULTY_TOOL, updating, device.folder());
}

std::vector<std::string> FaultyTool::failEach(Kind kind, unsigned step, const ToolRun& toolRun)
{
    device.putOld();
    oldDescription = device.description();
    usual = run(toolRun, Kind::none, 0, 0).result;
    isUsuallyNew = device.isNew();
    usualDescription = device.description();
    std::vector<std::string> faults;
    if (usual.status != toolRun.usualStatus) {
        faults.push_back("without a fault: status " + std::to_string(usual.status) + ", " + usual.errors);
    }
    unsigned points = 0;
    for (unsigned long number = 1;; number += step) {
        unsigned ways = 1;
        for (unsigned way = 0; way < ways; ++way, ++points) {
            const Outcome outcome = run(toolRun, kind, number, way);
            if (outcome.failed.empty()) {
                if (points == 0 || outcome.result.status != usual.status) {
                    faults.push_back("a run that reaches point " + std::to_string(number) + " no more ends with " +
                                     std::to_string(outcome.result.status) + ", " + outcome.result.errors);
                }
                std::cout << points << " points of " << toolRun.arguments.front() << '\n';
                return faults;
            }
            ways = outcome.ways;
            for (const std::string& fault : faultsOf(toolRun, outcome)) {
                faults.push_back(outcome.failed + " " + std::to_string(number) + ", way " + std::to_string(way) + ": " +
                                 fault + " (status " + std::to_string(outcome.result.status) + ", \"" +
                                 outcome.result.errors + "\")");
            }
        }
    }
}

FaultyTool::Outcome FaultyTool::run(const ToolRun& toolRun, Kind kind, unsigned long number, unsigned way)
{
    device.putOld();
    const fs::path report = reports.path() / "report";
    fs::remove(report);
    std::vector<std::string> environment = toolRun.surroundings;
    environment.push_back("TRELLAN_FAULT_REPORT=" + report.string());
    if (kind != Kind::none) {
        environment.push_back(std::string("TRELLAN_FAULT=") + (kind == Kind::call ? "call " : "allocation ") +
                              std::to_string(number) + " " + std::to_string(way));
    }
    Outcome outcome;
    outcome.result = runProcess(TRELLAN_FAULTY_TOOL, toolRun.arguments, device.folder(), environment);
    std::ifstream(report) >> outcome.failed >> outcome.ways;
    return outcome;
}

std::vector<std::string> FaultyTool::faultsOf(const ToolRun& toolRun, const Outcome& outcome) const
{
    const ProcessResult& result = outcome.result;
    std::vector<std::string> faults;
    const auto check = [&](bool isRight, const char* fault) {
        if (!isRight) {
            faults.emplace_back(fault);
        }
    };
    const auto isPrinted = [&result](const char* text) { return holds(result.output, text); };
    const bool isError = isPrinted("ERROR") || isPrinted("not found!") || isPrinted("cannot be read") ||
                         isPrinted(" error: ") || isPrinted(R"("severity": "error")") || isPrinted(R"("error": {)");
    const bool isTold = !result.errors.empty() || isError || toolRun.mayBeSilent;
    check(result.status >= 0, "a signal has ended it");
    check(!isBare(result.errors), "a reason, and not of what");
    if (result.status == usual.status) {
        check(isTold || result.output == usual.output, "another output");
    } else {
        check(std::count(toolRun.faultStatuses.begin(), toolRun.faultStatuses.end(), result.status) != 0,
              "a status that it cannot have");
        check(isTold || outcome.failed == "write", "nothing is said");  // "write": of what would have said it
    }
    check(result.status != 0 || device.isNew() == isUsuallyNew, "a success that is none");
    check(device.isOldOrNew(), "the device is neither old nor new");
    const std::string description = device.description();
    check(description == usualDescription || (result.status != 0 && description == oldDescription),
          "the description is neither old nor new");
    check(device.isUnlocked(), "the target is locked");
    check(!device.hasTemporaryFile() || outcome.failed == "unlink", "a temporary file is left");
    return faults;
}
