#include "documents/ExampleFolder.h"

#include <stdexcept>

#include "support/BuildTree.h"
#include "support/FileTree.h"
#include "support/TextFile.h"

namespace fs = std::filesystem;

ExampleFolder::ExampleFolder()
{
    copyTree(TRELLAN_SOURCE_DIR "/examples", folder.path());
    std::string target = readText(folder.path() / "target.json");
    const std::string realClock = "\"clock\": \"real\"";
    const std::size_t at = target.find(realClock);
    if (at == std::string::npos) {
        throw std::runtime_error("the example target is not on a real clock");
    }
    writeText(folder.path() / "target.json", target.replace(at, realClock.size(), "\"clock\": \"virtual\""));
}

ProcessResult ExampleFolder::run(const std::string& command) const
{
    const std::string tools = fs::path(TRELLAN_TOOL).parent_path().string();
    return runProcess("/bin/sh", {"-c", "PATH=$0:$PATH; " + command, tools}, path());
}
