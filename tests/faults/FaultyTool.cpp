#include "faults/FaultyTool.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "faults/LineFiles.h"

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
    constexpr int reasons[] = {EACCES, EAGAIN, EBUSY,  EINTR,  EINVAL, EIO,   EMFILE,    ENOENT,      ENOLCK,
                               ENOSYS, EROFS,  ENOMEM, ENOSPC, ENOTTY, EPERM, EOVERFLOW, EWOULDBLOCK, ESPIPE};
    return holds("\n" + errors, "\ntrellan-update: std::") ||
           std::any_of(std::begin(reasons), std::end(reasons), [&errors](int reason) {
               return holds("\n" + errors, "\ntrellan-update: " + std::generic_category().message(reason) + "\n");
           });
}

// Whether one of the lines of `text` tells a fault, and does not stand in `usual`.
bool tellsMore(const std::string& text, const std::string& usual)
{
    constexpr std::string_view marks[] = {
        "trellan-update: ",       "ERROR",        "WARNING", "not found!", "cannot be read", " error: ",
        R"("severity": "error")", R"("error": {)"};
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const bool isMarked = std::any_of(std::begin(marks), std::end(marks),
                                          [&line](std::string_view mark) { return holds(line, std::string(mark)); });
        if (isMarked && !holds("\n" + usual, "\n" + line + "\n")) {
            return true;
        }
    }
    return false;
}

// Empty without the option.
std::string argumentOf(const char* option, const ToolRun& toolRun)
{
    const auto found = std::find(toolRun.arguments.begin(), toolRun.arguments.end(), option);
    return found == toolRun.arguments.end() ? "" : *(found + 1);
}

std::string contentOfFile(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
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
    usuallyWritten = writtenBy(toolRun);
    usualEvents = namedBy("--events", toolRun);
    usualTrace = namedBy("--trace", toolRun);
    std::vector<std::string> faults;
    if (usuallyWritten.empty() != toolRun.written.empty()) {
        faults.push_back("without a fault: " + toolRun.written + " is not written");
    }
    for (const auto& [option, lines] : {std::pair("--events", usualEvents), std::pair("--trace", usualTrace)}) {
        if (lines.empty() != argumentOf(option, toolRun).empty()) {
            faults.push_back(std::string("without a fault: nothing is written for ") + option);
        }
    }
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
    for (const std::string& file : {toolRun.written, argumentOf("--events", toolRun), argumentOf("--trace", toolRun)}) {
        if (!file.empty()) {
            fs::remove(device.folder() / file);
        }
    }
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
    const bool isTold =
        tellsMore(result.errors, usual.errors) || tellsMore(result.output, usual.output) || toolRun.mayBeSilent;
    check(result.status >= 0, "a signal has ended it");
    check(!isBare(result.errors), "a reason, and not of what");
    if (result.status == usual.status) {
        const auto& words = toolRun.arguments;
        const bool isDocument = std::find(words.begin(), words.end(), "--json") != words.end();
        const bool needsDocument = isDocument && outcome.failed != "write";  // "write": it may be what was not written
        check((isTold && !needsDocument) || result.output == usual.output, "another output");
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
    const std::string written = writtenBy(toolRun);
    const std::string_view end =
        std::string_view(usuallyWritten).substr(usuallyWritten.rfind('\n', usuallyWritten.size() - 2) + 1);
    check(result.status == usual.status ? written == usuallyWritten : written.empty() || written.ends_with(end),
          "the file that it writes is another, or the beginning of one");
    const std::vector<std::string> ofLines = faultsOfLines(toolRun, result);
    faults.insert(faults.end(), ofLines.begin(), ofLines.end());
    return faults;
}

std::vector<std::string> FaultyTool::faultsOfLines(const ToolRun& toolRun, const ProcessResult& result) const
{
    const bool asUsual =
        result.status == usual.status && result.output == usual.output && result.errors == usual.errors;
    std::vector<std::string> faults = faultsOfEvents(namedBy("--events", toolRun), usualEvents,
                                                     {asUsual, holds(result.errors, "events cannot be written")});
    const std::vector<std::string> ofTrace = faultsOfTrace(namedBy("--trace", toolRun), usualTrace,
                                                           {asUsual, holds(result.errors, "cannot write the trace")});
    faults.insert(faults.end(), ofTrace.begin(), ofTrace.end());
    return faults;
}

std::string FaultyTool::writtenBy(const ToolRun& toolRun) const
{
    return toolRun.written.empty() ? "" : contentOfFile(device.folder() / toolRun.written);
}

std::string FaultyTool::namedBy(const char* option, const ToolRun& toolRun) const
{
    const std::string file = argumentOf(option, toolRun);
    return file.empty() ? "" : contentOfFile(device.folder() / file);
}
