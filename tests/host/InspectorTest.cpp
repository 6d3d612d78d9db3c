// A host program that explains an update with the second interface of the loaded library.
#include <stdexcept>
#include <string>

#include "Hosting.h"
#include "support/MessageCapture.h"

using nlohmann::ordered_json;
using namespace ZoNTrellanInspector;
using namespace ZoNTrellanUpdater;

namespace {

// An updater of the host's own making.
class OtherUpdater : public ZoITrellanUpdater {
public:
    void setPhaseCallBack(void (*)(unsigned)) override {}
    void setFailureCallBack(void (*)(unsigned)) override {}
    void setProgressCallBack(void (*)(unsigned)) override {}
    void setMessageCallBack(void (*)(const std::string&)) override {}
    unsigned apply() override { return 1; }
    int run() override { return 0; }
    void getArchiveInfo(std::string&, std::string&, std::string&, std::string&, std::string&) override {}
    unsigned getArchiveId() override { return 0; }
    void getUpdateElementList(ZoTUpdateElement*&, unsigned&) override {}
    void disableUpdateElement(unsigned) override {}
    void getUpdateFileList(ZoTUpdateFile*&, unsigned&) override {}
    bool checkRebootSupport(unsigned&) override { return false; }
    bool reboot() override { return false; }
};

// One line for each element, as such a program would print it.
std::string explained(ZoITrellanInspector& inspector)
{
    std::string text;
    for (unsigned i = 0; i < inspector.getElementCount(); ++i) {
        const ZoTElement& element = inspector.getElement(i);
        const ZoTKeys& keys = inspector.getElementKeys(i);
        text += keys.boardType + " " + std::to_string(keys.id) + " " + element.name + ": state " +
                std::to_string(static_cast<unsigned>(element.state));
        if (element.filePosition >= 0) {
            const ZoTFile& file = inspector.getFile(static_cast<unsigned>(element.filePosition));
            text += ", files[" + std::to_string(file.entry) + "] " + file.name + " in phase " +
                    std::to_string(file.sequence - 1) + " of " + std::to_string(inspector.getPhaseCount());
        }
        for (unsigned j = 0; j < inspector.getElementErrorCount(i); ++j) {
            text += ", " + inspector.getElementError(i, j).text;
        }
        text += "\n";
    }
    return text;
}

// What the archive expects, one line for each board object.
std::string expectations(ZoITrellanInspector& inspector)
{
    std::string text;
    for (unsigned i = 0; i < inspector.getFileCount(); ++i) {
        const unsigned boards = inspector.readFileKeys(i);
        for (unsigned j = 0; j < boards; ++j) {
            const ZoTFileKeys& keys = inspector.getFileKeys(j);
            text += inspector.getFile(i).name + " for " + keys.boardType + " " + keys.boardVariant + " " +
                    keys.boardId + ", element " + keys.id + ", decides for " + std::to_string(keys.decidesFor.size()) +
                    "\n";
        }
    }
    return text;
}

}  // namespace

TEST_F(Host, ExplainsAnUpdateWithAnInspector)
{
    ordered_json document = twoElements();
    document["script"]["elements"]["/ROOT/HCN#2"]["start"] = {{{"errors", {{{"code", 7}, {"text", "refused"}}}}}};
    const SimulatedTarget device(document);
    TestArchive archive(twoFiles());
    archive.addFile("firmware.bin", "firmware");
    archive.addFile("fpga.bin", "fpga");
    const Library library;
    const auto updater = library.create(optionsFor(UPDATE, archive.path()));
    const auto inspector = library.inspect(*updater);
    const MessageCapture quiet(*updater);

    ASSERT_EQ(updater->apply(), 0u);
    EXPECT_TRUE(inspector->isTargetSupported());
    EXPECT_EQ(explained(*inspector),
              "KR5120 1 UserFirmware: state 5, files[0] firmware.bin in phase 0 of 2\n"
              "KR5120 2 UserFpga: state 5, files[1] fpga.bin in phase 1 of 2\n");
    EXPECT_EQ(updater->run(), 0);
    EXPECT_EQ(explained(*inspector),
              "KR5120 1 UserFirmware: state 6, files[0] firmware.bin in phase 0 of 2\n"
              "KR5120 2 UserFpga: state 7, files[1] fpga.bin in phase 1 of 2, refused\n");
}

TEST_F(Host, TellsWhatAnArchiveExpectsWithAnInspector)
{
    const SimulatedTarget device(twoElements());
    TestArchive archive(twoFiles());
    archive.addFile("firmware.bin", "firmware");
    archive.addFile("fpga.bin", "fpga");
    const Library library;
    const auto updater = library.create(optionsFor(PRINT_ARCHIVE, archive.path()));
    const auto inspector = library.inspect(*updater);
    const MessageCapture quiet(*updater);

    ASSERT_EQ(updater->apply(), 0u);
    EXPECT_EQ(expectations(*inspector),
              "firmware.bin for \"KR5120\" null 0, element 1, decides for 1\n"
              "fpga.bin for \"KR5120\" null 0, element 2, decides for 1\n");
    EXPECT_EQ(inspector->readFileHeader(archive.path() + "/nothing").problem, "there is no such file");
}

TEST_F(Host, InspectsNoUpdaterOfAnotherMake)
{
    const Library library;
    OtherUpdater other;
    EXPECT_THROW(library.inspect(other), std::invalid_argument);
}

TEST_F(Host, CatchesWhatAnInspectorThrowsForAnElementThatThereIsNot)
{
    const Library library;
    const auto updater = library.create(optionsFor(UPDATE));
    const auto inspector = library.inspect(*updater);
    EXPECT_THROW(inspector->getElement(0), std::out_of_range);
}
