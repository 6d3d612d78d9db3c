// The check of a whole archive, and that of the files which an update uses, against nothing but reading them.
#include <fstream>
#include <memory>
#include <stdexcept>
#include <vector>

#include "Measure.h"
#include "Production.h"
#include "Workspace.h"
#include "ZoITrellanInspector.h"
#include "base/Crc32.h"

namespace {

// An archive with its files, each of `size` bytes, and a target that needs them all.
class WholeArchive {
public:
    WholeArchive(unsigned count, std::size_t size)
    {
        const std::string content(size, 'x');
        ZoNUpdateBase::Crc32 crc32;
        crc32.add(reinterpret_cast<const unsigned char*>(content.data()), content.size());
        const auto members = [&](unsigned i) {
            Json entry = production().members(i);
            entry["checksumCrc32"] = crc32.value();
            paths.push_back(folder.write(entry["name"], content));
            return entry;
        };
        folder.write("archive.json", textOf(descriptionOf(count, members)));
        folder.write("target.json", textOf(targetOf(count, production())));
        updater = appliedUpdater(optionsFor(ZoNTrellanUpdater::UPDATE, folder.path()));
        inspector.reset(ZoITrellanInspector::createInstance(*updater));
    }

    void check()
    {
        inspector->checkArchive(nullptr, nullptr);
        expectNoErrors();
    }

    void checkUsedFiles()
    {
        inspector->checkUsedFiles(nullptr, nullptr);
        expectNoErrors();
    }

    void read() const
    {
        std::vector<char> chunk(256 * 1024);
        for (const std::filesystem::path& path : paths) {
            std::ifstream file;
            file.rdbuf()->pubsetbuf(nullptr, 0);
            file.open(path, std::ios::binary);
            while (file.read(chunk.data(), static_cast<std::streamsize>(chunk.size())) || file.gcount() != 0) {
                benchmark::DoNotOptimize(chunk.data());
            }
        }
    }

private:
    void expectNoErrors() const
    {
        for (unsigned i = 0; i < inspector->getFindingCount(); ++i) {
            if (inspector->getFinding(i).severity == ZoNTrellanInspector::ZoTSeverity::ERROR) {
                throw std::runtime_error(inspector->getFinding(i).message);
            }
        }
    }

    TempDir folder;
    std::vector<std::filesystem::path> paths;
    std::unique_ptr<OpenUpdater> updater;
    std::unique_ptr<ZoITrellanInspector> inspector;
};

void checkArchive(benchmark::State& state)
{
    WholeArchive archive(sizeOf(state), 100);
    for ([[maybe_unused]] auto iteration : state) {
        archive.check();
    }
}

template <std::size_t size>
void checkUsedFiles(benchmark::State& state)
{
    WholeArchive archive(sizeOf(state), size);
    for ([[maybe_unused]] auto iteration : state) {
        archive.checkUsedFiles();
    }
}

template <std::size_t size>
void readUsedFiles(benchmark::State& state)
{
    const WholeArchive archive(sizeOf(state), size);
    for ([[maybe_unused]] auto iteration : state) {
        archive.read();
    }
}

constexpr auto sizes = {1000, 10000};

const auto* const check = measure("check", checkArchive, sizes);
const auto* const small = measure("check-used-files-of-1kb", checkUsedFiles<1000>, sizes);
const auto* const smallRead = measure("check-used-files-of-1kb-ifstream", readUsedFiles<1000>, sizes);
const auto* const large = measure("check-used-files-of-100kb", checkUsedFiles<100000>, {100, 1000});
const auto* const largeRead = measure("check-used-files-of-100kb-ifstream", readUsedFiles<100000>, {100, 1000});

}  // namespace
