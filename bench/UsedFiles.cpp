// The check of the files that an update uses, against nothing but reading them.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <fstream>
#include <memory>
#include <stdexcept>
#include <vector>

#include "Cases.h"
#include "Workspace.h"
#include "ZoITrellanInspector.h"
#include "base/Crc32.h"

namespace {

// Plain files, one for each of as many elements; each entry states the checksum.
class UsedFiles {
public:
    UsedFiles(unsigned count, std::size_t size)
    {
        const std::string content(size, 'x');
        ZoNUpdateBase::Crc32 crc32;
        crc32.add(reinterpret_cast<const unsigned char*>(content.data()), content.size());
        Case data = manyBoardTypes();
        data.members = [&, members = data.members](unsigned i) {
            nlohmann::json entry = members(i);
            entry["name"] = numbered("file", i);
            entry["checksumCrc32"] = crc32.value();
            return entry;
        };
        for (unsigned i = 0; i < count; ++i) {
            paths.push_back(workspace.write(numbered("file", i), content.c_str()));
        }
        workspace.write("archive.json", descriptionOf(entriesOf(count, data)));
        ::setenv("TRELLAN_TARGET", workspace.write("target.json", targetOf(count, data)).c_str(), 1);
        ZoNTrellanUpdater::ZoTOptions options;
        options.command = ZoNTrellanUpdater::UPDATE;
        options.archivePath = workspace.path();
        options.descriptionFileName = "archive.json";
        updater = std::make_unique<OpenUpdater>(options);
        updater->setMessageCallBack([](const std::string&) {});
        inspector.reset(ZoITrellanInspector::createInstance(*updater));
        if (updater->apply() != 0) {
            throw std::runtime_error("the archive or the target cannot be read");
        }
    }

    ~UsedFiles() { ::unsetenv("TRELLAN_TARGET"); }

    void check()
    {
        inspector->checkUsedFiles(nullptr, nullptr);
        if (inspector->getFindingCount() != 0) {
            throw std::runtime_error(inspector->getFinding(0).message);
        }
    }

    void read() const
    {
        std::vector<char> chunk(256 * 1024);
        for (const std::string& path : paths) {
            std::ifstream file;
            file.rdbuf()->pubsetbuf(nullptr, 0);
            file.open(path, std::ios::binary);
            while (file.read(chunk.data(), static_cast<std::streamsize>(chunk.size())) || file.gcount() != 0) {
                benchmark::DoNotOptimize(chunk.data());
            }
        }
    }

private:
    Workspace workspace;
    std::vector<std::string> paths;
    std::unique_ptr<OpenUpdater> updater;
    std::unique_ptr<ZoITrellanInspector> inspector;
};

void checkUsedFiles(benchmark::State& state)
{
    UsedFiles files(static_cast<unsigned>(state.range(0)), static_cast<std::size_t>(state.range(1)));
    for ([[maybe_unused]] auto iteration : state) {
        files.check();
    }
}

void readUsedFiles(benchmark::State& state)
{
    const UsedFiles files(static_cast<unsigned>(state.range(0)), static_cast<std::size_t>(state.range(1)));
    for ([[maybe_unused]] auto iteration : state) {
        files.read();
    }
}

}  // namespace

// Bytes of a file: a small one, and one as they are.
BENCHMARK(checkUsedFiles)->ArgsProduct({{10000}, {1000, 100000}})->Unit(benchmark::kMillisecond);
BENCHMARK(readUsedFiles)->ArgsProduct({{10000}, {1000, 100000}})->Unit(benchmark::kMillisecond);
