#include "faults/Device.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

constexpr const char* oldChecksum = "5";

std::string element(unsigned number, const char* name, const char* checksum)
{
    const std::string id = std::to_string(number);
    return R"({"id": "UPDATE_ELEMENT[)" + id + R"(]", "parameters": {"ID": )" + id + R"(, "NAME": ")" + name +
           R"(", "VERSION": "1.0", "CHECKSUM_CRC32": )" + checksum +
           R"(, "CONFIGURATION": 0, "VALID": 1, "ACTIVE": 1}})";
}

std::string target(const char* firmwareChecksum, const char* fpgaChecksum)
{
    return R"({"clock": "virtual", "flashDrive": "cfdrive", "tree": {"id": "ROOT", "items": [{"id": "HCN", "parameters": )"
           R"({"PRODUCT/BOARD_TYPE": "KR5120", "PRODUCT/NAME": "Board", "PRODUCT/SERIAL_NUMBER": 16777232}, "items": )"
           R"([{"id": "UPDATE_INFO", "items": [)" +
           element(1, "UserFirmware", firmwareChecksum) + ", " + element(2, "UserFpga", fpgaChecksum) + "]}]}]}}\n";
}

constexpr const char* ownDescription = R"({
  "info": {"formatVersion": "1.0", "archiveVersion": "2.3.4", "productName": "Product", "archiveName": "Archive"},
  "files": [
    {"name": "firmware.bin", "sequence": 1, "boardType": "KR5120", "id": 1, "checksumCrc32": 3589068740},
    {"name": "fpga.bin", "sequence": 2, "boardType": "KR5120", "id": 2, "checksumCrc32": 2079437629},
    {"name": "app.bin", "sequence": 3, "boardType": "KR5120", "targetPath": "data/app.bin", "checksumCrc32": 2757483969}
  ]
}
)";

// The same with a member that the format does not have, of 300,000 numbers.
std::string largeDescription()
{
    std::string description(ownDescription);
    std::string numbers(600'000, '0');
    for (std::size_t i = 1; i < numbers.size(); i += 2) {
        numbers[i] = ',';
    }
    return description.insert(1, "\"numbers\": [" + numbers + "0],");
}

constexpr const char* firmwareChecksum = "3589068740";
constexpr const char* fpgaChecksum = "2079437629";

void put(const fs::path& file, const std::string& content)
{
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
}

// Empty where there is no file.
std::string contentOf(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

constexpr const char* onDrive = "cfdrive/data/app.bin";

}  // namespace

Device::Device()
{
    put(folder() / "archive/archive.json", ownDescription);
    put(folder() / "archive/firmware.bin", "firmware");
    put(folder() / "archive/fpga.bin", "fpga");
    put(folder() / "archive/app.bin", "application");
    put(folder() / "large/archive.json", largeDescription());
}

void Device::putOld() const
{
    fs::remove(folder() / "archive/new.json");
    if (description() != ownDescription) {
        put(folder() / "archive/archive.json", ownDescription);
    }
    const std::string old = target(oldChecksum, oldChecksum);
    if (contentOf(targetFile()) != old) {
        put(targetFile(), old);
    }
    if (contentOf(folder() / onDrive) != "old") {
        fs::remove_all(folder() / "cfdrive/data");
        put(folder() / onDrive, "old");
    }
}

bool Device::isOldOrNew() const
{
    const std::string found = contentOf(targetFile());
    bool isKnown = false;
    for (const char* const firmware : {oldChecksum, firmwareChecksum}) {
        for (const char* const fpga : {oldChecksum, fpgaChecksum}) {
            isKnown = isKnown || found == target(firmware, fpga);
        }
    }
    const fs::path file = folder() / onDrive;
    const std::string content = contentOf(file);
    const bool isBeside = !fs::exists(file) && contentOf(file.string() + ".tmp") == "application";
    return isKnown && (content == "old" || content == "application" || isBeside);
}

bool Device::isNew() const
{
    return contentOf(targetFile()) == target(firmwareChecksum, fpgaChecksum) &&
           contentOf(folder() / onDrive) == "application";
}

std::string Device::text() const
{
    return contentOf(targetFile()) + contentOf(folder() / onDrive);
}

std::string Device::description() const
{
    return contentOf(folder() / "archive/archive.json");
}

bool Device::isUnlocked() const
{
    const int file = ::open((targetFile() + ".lock").c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return true;
    }
    const bool isFree = ::flock(file, LOCK_EX | LOCK_NB) == 0;
    ::close(file);
    return isFree;
}

bool Device::hasTemporaryFile() const
{
    for (const auto& entry : fs::directory_iterator(folder())) {
        const std::string name = entry.path().filename();
        if ((name.starts_with("target.json.") && name != "target.json.lock") || name.starts_with(".")) {
            return true;
        }
    }
    return false;
}
