#include "faults/FaultyTool.h"

#include <filesystem>
#include <fstream>
#include <iostream>

namespace fs = std::filesystem;
using FaultPoints::Kind;

std::vector<std::string> FaultyTool::failEach(Kind kind, unsigned step, const std::vector<std::string>& words,
                                              const std::vector<std::string>& lines)
{
    arguments = words;
    surroundings = lines;
    usual = run(Kind::none, 0, 0).result;
    isUsuallyNew = device.isNew();
    std::vector<std::string> faults;
    unsigned points = 0;
    for (unsigned long number = 1;; number += step) {
        unsigned ways = 1;
        for (unsigned way = 0; way < ways; ++way, ++points) {
            const Outcome outcome = run(kind, number, way);
            if (outcome.failed.empty()) {
                std::cout << points << " points of " << words.front() << '\n';
                return faults;
            }
            ways = outcome.ways;
            for (const std::string& fault : faultsOf(outcome)) {
                faults.push_back(outcome.failed + " " + std::to_string(number) + ", way " + std::to_string(way) + ": " +
                                 fault + " (status " + std::to_string(outcome.result.status) + ", \"" +
                                 outcome.result.errors + "\")");
            }
        }
    }
}

FaultyTool::Outcome FaultyTool::run(Kind kind, unsigned long number, unsigned way)
{
    device.putOld();
    const fs::path report = reports.path() / "report";
    fs::remove(report);
    std::vector<std::string> environment = surroundings;
    environment.push_back("TRELLAN_FAULT_REPORT=" + report.string());
    if (kind != Kind::none) {
        environment.push_back(std::string("TRELLAN_FAULT=") + (kind == Kind::call ? "call " : "allocation ") +
                              std::to_string(number) + " " + std::to_string(way));
    }
    Outcome outcome;
    outcome.result = runProcess(TRELLAN_FAULTY_TOOL, arguments, device.folder(), environment);
    std::ifstream(report) >> outcome.failed >> outcome.ways;
    return outcome;
}

std::vector<std::string> FaultyTool::faultsOf(const Outcome& outcome) const
{
    const ProcessResult& result = outcome.result;
    std::vector<std::string> faults;
    const auto check = [&](bool isRight, const char* fault) {
        if (!isRight) {
            faults.emplace_back(fault);
        }
    };
    const auto isPrinted = [&result](const char* text) { return result.output.find(text) != std::string::npos; };
    const bool isError = isPrinted("ERROR") || isPrinted("not found!") || isPrinted("cannot be read") ||
                         isPrinted(" error: ") || isPrinted(R"("severity": "error")") || isPrinted(R"("error": {)");
    const bool isTold = !result.errors.empty() || isError;
    check(result.status >= 0, "a signal has ended it");
    check(result.status != 2 || usual.status == 2, "taken for wrong usage");
    if (result.status == usual.status) {
        check(isTold || result.output == usual.output, "another output");
    } else {
        check(isTold || outcome.failed == "write", "nothing is said");  // "write": of what would have said it
    }
    check(result.status != 0 || device.isNew() == isUsuallyNew, "a success that is none");
    check(device.isOldOrNew(), "the device is neither old nor new");
    check(device.isUnlocked(), "the target is locked");
    check(!device.hasTemporaryFile() || outcome.failed == "unlink", "a temporary file is left");
    return faults;
}
