// ArchiveReader: an updater for a test's archive, with the text that it prints.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

#include "archive/ZoCUpdateArchive.h"
#include "support/ErrorPool.h"
#include "support/MessageCapture.h"
#include "support/OpenUpdater.h"
#include "support/TestArchive.h"

class ArchiveReader {
public:
    explicit ArchiveReader(const TestArchive& archive, std::uint32_t command = ZoNTrellanUpdater::PRINT_ARCHIVE);
    // For a folder that is not a TestArchive's, or another description file.
    ArchiveReader(const std::string& folder, const std::string& descriptionFileName,
                  std::uint32_t command = ZoNTrellanUpdater::PRINT_ARCHIVE);

    // Reads the archive and returns what the archive returned.
    bool read() { return archive().read(errors); }

    ZoCUpdateArchive& archive() { return updater.getArchive(); }
    const ZoNUpdateArchive::ZoSUpdateFile& file(std::size_t index) { return archive().getUpdateFileList().at(index); }
    std::size_t fileCount() { return archive().getUpdateFileList().size(); }

    // What was printed up to now; each message is one fragment.
    std::string text() const { return messages.text(); }

    // What `print` prints, without what came before.
    template <class Print>
    std::string textOf(Print print)
    {
        messages.clear();
        print(archive());
        return text();
    }

    OpenUpdater updater;
    MessageCapture messages;
    ErrorPool errors;
};

// Expect that reading fails with exactly this one message and adds nothing to the error pool.
void expectRefused(const TestArchive& archive, const std::string& message);
void expectRefused(const nlohmann::ordered_json& description, const std::string& message);

// Expect that reading succeeds without a word.
void expectAccepted(const TestArchive& archive);
void expectAccepted(const nlohmann::ordered_json& description);

// The value that `text` holds; invalid when it is not one JSON document.
ZoNJson::json parseJson(const std::string& text);
