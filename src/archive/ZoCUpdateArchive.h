// ZoCUpdateArchive: the firmware archive, a folder with a description file and update files.
//
// Reads and validates the description, completes missing checksums from the update files' headers, and prints the
// archive. Whatever fails prints exactly one message.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ZoITrellanUpdater.h"
#include "archive/ZoSUpdateFile.h"
#include "libZoErrorHandling/ZoCErrorListPool.h"

class ZoCTrellanUpdater;

namespace ZoNUpdateArchive {
class DescriptionRules;
class ObjectMembers;
class DescriptionSurvey;
enum class DescriptionState;
}  // namespace ZoNUpdateArchive

class ZoCUpdateArchive {
public:
    // Keeps both pointers; they must outlive the archive.
    ZoCUpdateArchive(const ZoCTrellanUpdater* owner, const ZoNTrellanUpdater::ZoTOptions* options);
    ZoCUpdateArchive(const ZoCUpdateArchive&) = delete;
    ZoCUpdateArchive& operator=(const ZoCUpdateArchive&) = delete;

    // Reads the description file and the missing checksums. After false the archive is partly filled and not to be
    // used.
    bool read(ZoCErrorListPool& errors);

    // Reads the description file named by the options.
    bool readDescriptionFile(ZoCErrorListPool& errors);

    // Reads the description file at `path`. `errors` is only passed along.
    bool readDescriptionFileJson(ZoCErrorListPool& errors, std::string path);

    // Reads the description file named by the options as far as it can be read, for those who want to know all that is
    // wrong with it: goes on behind a fault, leaves out the file entries that have one, and prints nothing.
    ZoNUpdateArchive::DescriptionState survey(ZoNUpdateArchive::DescriptionSurvey& taker);

    // Checks the types and values of the optional properties of `object`: file entry number `entry` itself (`board` -1)
    // or the element `board` of its "boards".
    bool checkOptionalProperties(const ZoNJson::json& object, std::uint32_t entry, std::int32_t board) const;

    // Fills in the checksum of every file for which the description gives none.
    bool readUpdateFiles();

    // The readers of update-file headers. They return 0 when the file is of their kind and 1 when it is not or cannot
    // be read; readUpdateFileHeader returns 2 when it cannot be opened. With 0 all outputs are set, to notAvailable (a
    // version: to that 64-bit value) where the file does not give them; otherwise they are not to be used. They print
    // nothing.
    static int readUpdateFileHeader(const std::string& path, std::uint32_t& minHwCompatibilityId,
                                    std::uint32_t& maxHwCompatibilityId, std::uint32_t& minSwCompatibilityId,
                                    std::uint32_t& maxSwCompatibilityId, std::uint32_t& typeId,
                                    std::uint32_t& checksumCrc32, ZoCVersion& version);
    static int readUpdateFileInventory(const std::string& path, std::uint32_t& minHwCompatibilityId,
                                       std::uint32_t& maxHwCompatibilityId, std::uint32_t& minSwCompatibilityId,
                                       std::uint32_t& maxSwCompatibilityId, std::uint32_t& typeId,
                                       std::uint32_t& checksumCrc32, ZoCVersion& version);
    static int readPgiBitstreamFileHeader(const std::string& path, std::uint32_t& checksumCrc32);

    // Prints the archive's version, always with three numbers.
    void outputArchiveVersion() const;

    // Prints the table of update files.
    void printArchive() const;

    // Prints a description of the archive as JSON. Accepted entries stand in it as they were read, with the checksums
    // found in the update files; skipped entries are left out. "info" has the members that this library knows and no
    // other, the format version 1.0, and the archive version as the platform writes it ("23.1.0" becomes "23.1").
    // Other members of the top level are left out.
    void outputDescriptionFile() const;
    void outputDescriptionFileJson() const;

    // What the description says of the archive.
    void getInfo(std::string& archiveName, std::string& archiveVersion, std::string& productName,
                 std::string& formatVersion, std::string& archiveVariant) const;

    // The accepted file entries in the order of the description. An update file is named by its index here.
    const std::vector<ZoNUpdateArchive::ZoSUpdateFile>& getUpdateFileList() const { return files; }
    std::vector<ZoNUpdateArchive::ZoSUpdateFile>& getUpdateFileList() { return files; }

    // How often the list of entries was begun anew: what refers to it holds as long as this stays.
    unsigned getGeneration() const { return generation; }

    // The archive's folder.
    const std::string& getPath() const { return options->archivePath; }

    // The archive's description file, in that folder.
    std::string descriptionPath() const { return getPath() + "/" + options->descriptionFileName; }

    // Where `file` is: in the archive's folder.
    std::string pathOf(const ZoNUpdateArchive::ZoSUpdateFile& file) const;

    // Largest "sequence" of the accepted entries; 0 when there is none.
    std::uint32_t getMaxSequence() const { return maxSequence; }

    // Number of entries left out because they need a newer library.
    std::uint32_t getUnsupportedElements() const { return unsupportedElements; }

private:
    // Opens and parses the description file at `path`. Otherwise `message` is what the reader prints.
    ZoNUpdateArchive::DescriptionState readDocument(const std::string& path, ZoNJson::json& document,
                                                    std::string& message) const;

    ZoNUpdateArchive::DescriptionRules rules() const;
    bool readInfo(const ZoNJson::json& document, const ZoNUpdateArchive::DescriptionRules& infoRules);
    bool readFileEntries(const ZoNJson::json& entries);
    void addFile(const ZoNUpdateArchive::ObjectMembers& entry, std::uint32_t number);
    ZoNUpdateArchive::ZoSUpdateFile makeUpdateFile(const ZoNUpdateArchive::ObjectMembers& entry) const;

    // Prints the message and returns false.
    bool fail(const char* format, ...) const __attribute__((format(printf, 2, 3)));

    const ZoCTrellanUpdater* owner;
    const ZoNTrellanUpdater::ZoTOptions* options;
    ZoCVersion formatVersion;
    ZoCVersion archiveVersion;
    ZoCString productName;
    ZoCString archiveVariant;
    ZoCString archiveName;
    std::vector<ZoNUpdateArchive::ZoSUpdateFile> files;
    std::uint32_t maxSequence = 0;
    std::uint32_t unsupportedElements = 0;
    unsigned generation = 0;
};
