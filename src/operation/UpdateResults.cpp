// The outcome of an update, element by element.
#include "operation/ZoCUpdateOperation.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateInventory;

namespace {

constexpr unsigned errorIndent = 7;

}  // namespace

bool ZoCUpdateOperation::printUpdateResults(ZoCErrorListPool& errors, bool filesMissing) const
{
    updater->print("\nResults:\n");
    unsigned failed = 0;
    for (const ZoSUpdateElement& element : elements) {
        if (element.updateState == NOTHING_TO_DO) {
            continue;
        }
        errors += *element.statusErrorList;
        errors += *element.resultErrorList;
        if (!element.hasSucceeded()) {
            ++failed;
            printFailure(element);
        }
    }
    if (failed != 0) {
        updater->print("\n    Update failed!\n");
        return false;
    }
    if (filesMissing) {
        updater->print("\n    Update incomplete due to missing files in the source folder!\n");
        return false;
    }
    updater->print("\n    Update completed successfully!\n");
    return true;
}

void ZoCUpdateOperation::printFailure(const ZoSUpdateElement& element) const
{
    updater->print("    ERROR: %s:\n", element.displayName.c_str());
    updater->printErrorList(*element.statusErrorList, errorIndent);
    updater->printErrorList(*element.resultErrorList, errorIndent);
    if (element.updateState == CANCELLED) {
        updater->print("%*sUpdate cancelled due to previous update errors on the same board.\n",
                       static_cast<int>(errorIndent), "");
    }
}
