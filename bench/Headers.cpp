// Reading an archive whose description states no checksums, so that the header of each file is read: half of the files
// have a binary header, half are bitstreams.
#include "Measure.h"
#include "Production.h"
#include "Workspace.h"
#include "archive/ZoCUpdateArchive.h"
#include "support/UpdateFiles.h"

namespace {

void readHeaders(benchmark::State& state)
{
    const TempDir folder;
    const std::string contents[] = {UpdateFiles::binaryFile({.checksum = 1}), UpdateFiles::bitstreamFile(2)};
    Json description = descriptionOf(sizeOf(state), production().members);
    unsigned number = 0;
    for (Json& entry : description["files"]) {
        entry.erase("checksumCrc32");
        folder.write(entry["name"], contents[number++ % 2]);
    }
    folder.write("archive.json", textOf(description));
    Workspace workspace(optionsFor(ZoNTrellanUpdater::PRINT_ARCHIVE, folder.path()));
    for ([[maybe_unused]] auto iteration : state) {
        if (!workspace.updater().getArchive().read(workspace.errors())) {
            throw std::runtime_error("a header cannot be read");
        }
    }
    state.counters["us_per_file"] = benchmark::Counter(
        sizeOf(state) / 1e6, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

const auto* const registered = measure("headers", readHeaders, {980, 9800});

}  // namespace
