#include "simulation/base/Resources.h"

namespace TrellanSimulation {

Resources& resources()
{
    // Without a destructor, so libraries may still count while they are being unloaded.
    static Resources counts;
    return counts;
}

}  // namespace TrellanSimulation
