#include "simulation/base/StandardError.h"

#include <iostream>

namespace TrellanSimulation {

void tellOnStandardError(const std::string& text)
{
    const std::ios_base::Init stream;  // nothing else says that it is there while libraries are loaded
    std::cerr << text + '\n' << std::flush;
}

}  // namespace TrellanSimulation
