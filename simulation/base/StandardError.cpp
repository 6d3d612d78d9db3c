#include "simulation/base/StandardError.h"

#include <ext/stdio_sync_filebuf.h>
#include <unistd.h>

#include <iostream>

#include "json/TerminalText.h"

namespace TrellanSimulation {

namespace {

// No host has put a buffer of its own there, as is so while libraries are loaded.
bool isPlainTerminal()
{
    return dynamic_cast<__gnu_cxx::stdio_sync_filebuf<char>*>(std::cerr.rdbuf()) != nullptr &&
           ::isatty(STDERR_FILENO) == 1;
}

}  // namespace

void tellOnStandardError(const std::string& text)
{
    [[maybe_unused]] const std::ios_base::Init stream;  // nothing else says that it is there while libraries are loaded
    std::cerr << (isPlainTerminal() ? TrellanJson::withControlCharactersShown(text) : text) + '\n' << std::flush;
}

}  // namespace TrellanSimulation
