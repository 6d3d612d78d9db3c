// FlashDriveFixture: base of the tests of writing to the flash drive. A scanned target gives the process its drive.
#pragma once

#include <algorithm>
#include <fstream>

#include "operation/OperationFixture.h"
#include "support/Namespaces.h"
#include "support/TextFile.h"

class FlashDriveFixture : public OperationFixture {
protected:
    void SetUp() override { SKIP_WITHOUT_MOUNT(); }

    // Prepares a target with an empty flash drive and an archive that holds "c.bin".
    void prepareDrive()
    {
        hasFlashDrive = true;
        prepare();
        archive->addFile("c.bin", "content of c");
        ASSERT_TRUE(std::filesystem::exists("/mnt/cn/cfdrive"));
    }

    // Writes the archive's file `name` to `location`; what there is to tell becomes `messages`.
    bool write(const std::string& name, const std::string& location)
    {
        ZoNUpdateArchive::ZoSUpdateFile update;
        update.name = name.c_str();
        return operation().writeFileSystemElement(update, location.c_str(), messages);
    }

    // Files and folders of the drive, relative and sorted; folders end in "/".
    std::vector<std::string> onDrive() const { return below(drive()); }

    static std::vector<std::string> below(const std::filesystem::path& folder)
    {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
            found.push_back(entry.path().lexically_relative(folder).string() + (entry.is_directory() ? "/" : ""));
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    static void put(const std::filesystem::path& path, const std::string& content)
    {
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << content;
    }

    std::vector<std::string> messages = {"from before"};
};
