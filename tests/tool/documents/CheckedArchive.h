// CheckedArchive: base of the tests of what `check` finds in an archive, as it is printed and as JSON.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/TempDir.h"

class CheckedArchive : public testing::Test {
protected:
    using Texts = std::vector<std::string>;

    // Writes the description.
    void describe(const std::string& text) const { addFile("archive.json", text); }

    // Writes a sound description with these entries: each on a line of its own, the first on line 2, from column 1 on.
    void describeEntries(const Texts& entries) const;

    // Adds an update file.
    void addFile(const std::string& name, const std::string& content) const
    {
        folder.write(archiveName + "/" + name, content);
    }

    // What the command prints, the line of counts left out. The folder that the archive is in is shown as {folder}.
    Texts lines() const;

    // The members of the document's "findings", each on one line. The document has to conform to its schema.
    Texts records() const;

    std::filesystem::path file(const std::string& name) const { return folder.path() / archiveName / name; }

    const TempDir folder;
    std::string archiveName = "archive";  // of the archive's folder in `folder`; to be changed before files are added

private:
    std::string printed(bool asJson) const;
};
