// TemporaryFile: the file beside a target on the flash drive that becomes the target once it is whole.
//
// Of what happens to be there under its name, nothing is followed or reused.
#pragma once

#include <string>
#include <string_view>

// What its name has behind the target's.
inline constexpr std::string_view temporaryEnding = ".tmp";

class TemporaryFile {
public:
    // Touches nothing yet.
    explicit TemporaryFile(std::string path) : name(std::move(path)) {}

    const std::string& path() const { return name; }

    // Makes room for a new file. An old one, into which a copy that has outlived its update may still write, and a
    // symbolic link are removed. Returns 0, or the error number: EISDIR for a folder, EINVAL for anything else.
    int makeRoom() const;

    // True when it is a regular file with something in it.
    bool hasContent() const;

    // True when it is as large as `source`: another process may have cut or replaced it.
    bool isAsLargeAs(const std::string& source) const;

    // Writes the file to the disk, and its folder, so that the file is found there. Returns 0 or the error number. A
    // folder that cannot be flushed by itself, or not without the right to read it, is no error.
    int flush() const;

    // Removes the file if it is there.
    void discard() const;

private:
    const std::string name;
};
