#include "ArchiveReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>

using nlohmann::ordered_json;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

ZoNTrellanUpdater::ZoTOptions options(const std::string& folder, const std::string& descriptionFileName,
                                      std::uint32_t command)
{
    ZoNTrellanUpdater::ZoTOptions options;
    options.archivePath = folder;
    options.descriptionFileName = descriptionFileName;
    options.command = command;
    return options;
}

}  // namespace

ArchiveReader::ArchiveReader(const TestArchive& archive, std::uint32_t command)
    : ArchiveReader(archive.path(), "archive.json", command)
{
}

ArchiveReader::ArchiveReader(const std::string& folder, const std::string& descriptionFileName, std::uint32_t command)
    : updater(options(folder, descriptionFileName, command)), messages(updater)
{
}

void expectRefused(const TestArchive& archive, const std::string& message)
{
    ArchiveReader reader(archive);
    EXPECT_FALSE(reader.read());
    EXPECT_THAT(reader.messages.fragments(), ElementsAre(message));
    EXPECT_EQ(reader.errors.count(), 0u);
}

void expectRefused(const ordered_json& description, const std::string& message)
{
    SCOPED_TRACE(description.dump());
    expectRefused(TestArchive(description), message);
}

void expectAccepted(const TestArchive& archive)
{
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    EXPECT_THAT(reader.messages.fragments(), IsEmpty());
    EXPECT_EQ(reader.errors.count(), 0u);
}

void expectAccepted(const ordered_json& description)
{
    SCOPED_TRACE(description.dump());
    expectAccepted(TestArchive(description));
}

ZoNJson::json parseJson(const std::string& text)
{
    std::string bytes = text;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(::fmemopen(bytes.data(), bytes.size(), "rb"),
                                                                 &std::fclose);
    return ZoNJson::json::parse(stream.get());
}
