#include "Workspace.h"

#include <unistd.h>

#include <fstream>
#include <stdexcept>

Workspace::Workspace() : instance(std::make_unique<OpenUpdater>(ZoNTrellanUpdater::ZoTOptions()))
{
    std::string name = (std::filesystem::temp_directory_path() / "trellan-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("cannot make the folder " + name);
    }
    folder = name;
    errorList = ZoNUpdateBase::makeErrorList();
    instance->setMessageCallBack([](const std::string&) {});
}

Workspace::~Workspace()
{
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

std::string Workspace::write(const std::string& name, const nlohmann::json& document) const
{
    return write(name, document.dump().c_str());
}

std::string Workspace::write(const std::string& name, const char* content) const
{
    const std::filesystem::path path = folder / name;
    std::ofstream file(path);
    file << content;
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path.string());
    }
    return path.string();
}

nlohmann::json descriptionOf(nlohmann::json entries)
{
    return {
        {"info",
         {{"formatVersion", "1.0"}, {"archiveVersion", "1.0"}, {"productName", "Product"}, {"archiveName", "Archive"}}},
        {"files", std::move(entries)}};
}

nlohmann::json entryOf(const nlohmann::json& members)
{
    nlohmann::json entry = {{"name", "file.bin"}, {"sequence", 1}, {"checksumCrc32", 1}, {"version", "2.0"}};
    entry.update(members);
    return entry;
}
