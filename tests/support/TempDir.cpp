#include "support/TempDir.h"

#include <stdlib.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

namespace {

// TMPDIR, unless it cannot be used. Update files whose path a shell does not take literally are refused, so a folder
// with blanks and the like in its name is left aside.
fs::path parentFolder()
{
    std::error_code error;
    const fs::path folder = fs::absolute(fs::temp_directory_path(error));
    const auto isLiteral = [](char character) {
        return std::string_view("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/._-+")
                   .find(character) != std::string_view::npos;
    };
    const std::string& name = folder.native();
    return !error && std::all_of(name.begin(), name.end(), isLiteral) ? folder : "/tmp";
}

}  // namespace

TempDir::TempDir()
{
    std::string name = (parentFolder() / "trellan-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), "mkdtemp " + name);
    }
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
    if (!stream) {
        throw std::runtime_error("cannot write " + file.string());
    }
    return file;
}
