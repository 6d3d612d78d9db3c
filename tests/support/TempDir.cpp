#include "support/TempDir.h"

#include <stdlib.h>

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

TempDir::TempDir()
{
    std::string name = (fs::temp_directory_path() / "trellan-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), "mkdtemp " + name);
    folder = name;
}

TempDir::~TempDir()
{
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

fs::path TempDir::write(const std::string& name, std::string_view content) const
{
    const fs::path file = folder / name;
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    if (!stream)
        throw std::runtime_error("cannot write " + file.string());
    return file;
}
