#include "faults/HostWork.h"

#include <memory>
#include <new>

#include "ZoITrellanInspector.h"
#include "faults/FaultPoints.h"

using namespace ZoNTrellanUpdater;

std::string& printed()
{
    static std::string text;
    return text;
}

namespace {

void takeText(const std::string& text)
{
    printed() += text;
}

void lookAtEverything(ZoITrellanUpdater& updater, ZoITrellanInspector& inspector)
{
    ZoTUpdateElement* elements = nullptr;
    ZoTUpdateFile* files = nullptr;
    unsigned count = 0;
    updater.getUpdateElementList(elements, count);
    const std::unique_ptr<ZoTUpdateElement[]> elementOwner(elements);
    updater.getUpdateFileList(files, count);
    const std::unique_ptr<ZoTUpdateFile[]> fileOwner(files);
    unsigned state = 0;
    updater.checkRebootSupport(state);
    for (unsigned i = 0; i < inspector.getElementCount(); ++i) {
        inspector.getElement(i);
        inspector.getElementKeys(i);
        inspector.explainElement(i);
    }
    for (unsigned i = 0; i < inspector.getFileCount(); ++i) {
        inspector.readFileHeader(inspector.getFile(i).path);
        inspector.explainFile(i);
        inspector.readFileKeys(i);
    }
    inspector.checkUsedFiles(nullptr, nullptr);
    inspector.checkArchive(nullptr, nullptr);
    inspector.recordInventory();
}

bool isPrinted(const char* text)
{
    return printed().find(text) != std::string::npos;
}

}  // namespace

HostWork workAsHost(const ZoTOptions& options)
{
    HostWork work;
    printed().clear();
    try {
        const std::unique_ptr<ZoITrellanUpdater> updater(ZoITrellanUpdater::createInstance(options));
        updater->setMessageCallBack(takeText);
        const std::unique_ptr<ZoITrellanInspector> inspector(ZoITrellanInspector::createInstance(*updater));
        work.applied = updater->apply();
        lookAtEverything(*updater, *inspector);
        if (work.applied == 0) {
            work.ran = updater->run();
        }
    } catch (const std::bad_alloc&) {
        work.threwBadAlloc = true;
    } catch (...) {
        work.threwOther = true;
    }
    FaultPoints::chooseNone();
    return work;
}

bool isSaid(const HostWork& work)
{
    switch (work.applied) {
        case 0:
            return work.ran == 1 || isPrinted("Update failed!\n") ||
                   isPrinted("Update incomplete due to missing files in the source folder!\n") ||
                   isPrinted("\nReported errors:\n");
        case 1:
            return printed().find("ERROR: ") != std::string::npos &&
                   (isPrinted("ERROR: Failed to read firmware archive.\n") ||
                    isPrinted("ERROR: Cannot read target device information.\n"));
        case 2:
            return isPrinted("ERROR: The target system is not supported by this firmware archive.\n");
        default:
            return false;
    }
}
