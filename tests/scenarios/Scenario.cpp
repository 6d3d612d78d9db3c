#include "scenarios/Scenario.h"

#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

#include "scenarios/HeldLock.h"
#include "support/FileTree.h"
#include "support/Process.h"
#include "support/TextFile.h"

namespace fs = std::filesystem;
using nlohmann::ordered_json;

namespace {

void replaceAll(std::string& text, const std::string& from, const std::string& to)
{
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

std::string firstLine(const fs::path& file)
{
    std::istringstream lines(readText(file));
    std::string line;
    std::getline(lines, line);
    return line;
}

// Tells the runs of one scenario apart.
std::string heading(const std::vector<std::string>& arguments)
{
    std::string line = "$ trellan-update";
    for (const std::string& argument : arguments) {
        line += " " + argument;
    }
    return line + "\n";
}

}  // namespace

Scenario::Scenario(const fs::path& folder)
{
    takeOver(folder);
    if (fs::exists(folder / "base")) {
        takeOver(folder.parent_path() / firstLine(folder / "base"));
    }
    fs::create_directories(inWork("flash"));
    if (fs::exists(inWork("script.json"))) {
        addScript();
    }
}

void Scenario::takeOver(const fs::path& source) const
{
    for (const char* const name : {"arguments", "target.json", "script.json", "archive", "flash", "hold-lock"}) {
        if (fs::exists(source / name) && !fs::exists(inWork(name))) {
            copyTree(source / name, inWork(name));
        }
    }
}

void Scenario::addScript() const
{
    ordered_json target = ordered_json::parse(readText(inWork("target.json")));
    target["script"] = ordered_json::parse(readText(inWork("script.json")));
    writeText(inWork("target.json"), target.dump(2));
}

bool Scenario::hasFlashDrive() const
{
    return fs::exists(inWork("target.json")) &&
           ordered_json::parse(readText(inWork("target.json")), nullptr, false).contains("flashDrive");
}

std::vector<std::vector<std::string>> Scenario::runs() const
{
    std::vector<std::vector<std::string>> result(1);
    std::istringstream lines(readText(inWork("arguments")));
    for (std::string line; std::getline(lines, line);) {
        replaceAll(line, "{archive}", inWork("archive").string());
        if (line.empty()) {
            result.emplace_back();
        } else {
            result.back().push_back(line);
        }
    }
    return result;
}

std::string Scenario::normalised(std::string text) const
{
    replaceAll(text, work.path().string(), "{folder}");
    return std::regex_replace(text, std::regex("(\"fileTime\": ?)[0-9]+"), "$1{time}");
}

ScenarioResult Scenario::run(const fs::path& program) const
{
    const bool held = fs::exists(inWork("hold-lock"));
    const HeldLock lock(held ? inWork("target.json.lock") : fs::path());
    ScenarioResult result;
    const std::vector<std::vector<std::string>> all = runs();
    for (std::vector<std::string> arguments : all) {
        if (all.size() > 1) {
            result.output += heading(arguments);
        }
        std::vector<std::string> environment;
        if (fs::exists(inWork("target.json"))) {
            environment.push_back("TRELLAN_TARGET=" + inWork("target.json").string());
        }
        arguments.insert(arguments.end(), {"--trace", inWork("trace").string()});
        const ProcessResult process = runProcess(program, arguments, work.path(), environment);
        result.output += process.output;
        result.errors += process.errors;
        result.statuses += std::to_string(process.status) + "\n";
    }
    if (fs::exists(inWork("trace"))) {
        result.trace = normalised(readText(inWork("trace")));
    }
    result.output = normalised(result.output);
    result.errors = normalised(result.errors);
    return result;
}
