// The flash drive and the threads of a process. Each test runs in a process whose /mnt nobody else sees and where
// /mnt/cn/cfdrive is a mounted file system, as on a machine that is a device itself.
#include <gtest/gtest.h>

#include <functional>
#include <future>
#include <iostream>
#include <thread>

#include "Device.h"
#include "FlashTarget.h"
#include "OwnMnt.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* refusal =
    "cannot be read: this thread does not see the flash drive: use the target from the thread that scanned it first, "
    "or from threads that this one starts after the scan.";

// A thread that was there before the scans of the others.
class EarlierThread {
public:
    // Does `action` there and waits for its end.
    void run(std::function<void()> action)
    {
        work.set_value(std::move(action));
        thread.join();
    }

private:
    std::promise<std::function<void()>> work;
    std::thread thread{[next = work.get_future()]() mutable { next.get()(); }};
};

void makeMachine()
{
    makeOwnMnt();
    fs::create_directories(flashPath);
    mountMemory(flashPath.c_str());
    writeText(flashPath / "file", "the machine's");
}

// A device whose CN has the element 1, with the file "drive's" on its flash drive and an update file beside it.
class Device {
public:
    Device()
    {
        writeText(target.flash() / "file", "the drive's");
        writeText(file(), "123456789");
        nlohmann::ordered_json document = flashDocument();
        document["tree"]["items"].push_back(board("HCN", {}, {updateElement(1, {})}));
        writeText(target.target.path(), document.dump());
    }

    std::string file() const { return target.target.folder() / "a.bin"; }

private:
    FlashTarget target;
};

// The end of each of the errors' texts.
std::string endsOf(ErrorPool& errors)
{
    std::string ends;
    for (unsigned index = 0; index < errors.count(); ++index) {
        const std::string text = errors.text(index);
        ends += errors.code(index) == 0x26300007 ? text.substr(text.find("cannot be read")) : text;
    }
    return ends;
}

class FlashDriveThreads : public FlashDrive {
protected:
    FlashDriveThreads() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

}  // namespace

TEST_F(FlashDriveThreads, AScanOutsideLeavesTheMachinesMountsAlone)
{
    EXPECT_EXIT(std::_Exit([] {
                    makeMachine();
                    const Device device;
                    EarlierThread outside;
                    const Scan first;
                    testing::internal::CaptureStderr();
                    std::string told;
                    outside.run([&] {
                        Scan second;
                        told = endsOf(second.errors) + ' ' + readText(flashPath / "file");
                    });
                    testing::internal::GetCapturedStderr();
                    std::cerr << told << ' ' << readText(flashPath / "file");
                    return first.result;
                }()),
                testing::ExitedWithCode(0), std::string(refusal) + " the machine's the drive's$");
}

TEST_F(FlashDriveThreads, AScanOutsideIsRefusedForATargetWithoutADriveToo)
{
    EXPECT_EXIT(std::_Exit([] {
                    makeMachine();
                    EarlierThread outside;
                    const FlashTarget withDrive;
                    const Scan first;
                    const SimulatedTarget withoutDrive(target({}));
                    testing::internal::CaptureStderr();
                    std::string told;
                    outside.run([&] {
                        Scan second;
                        told = endsOf(second.errors);
                    });
                    testing::internal::GetCapturedStderr();
                    std::cerr << told;
                    return first.result;
                }()),
                testing::ExitedWithCode(0), refusal);
}

TEST_F(FlashDriveThreads, ALockOutsideIsRefused)
{
    EXPECT_EXIT(std::_Exit([] {
                    makeMachine();
                    const Device device;
                    EarlierThread outside;
                    const Scan scan;
                    outside.run([] {
                        Session session;
                        std::cerr << session.handle << ' ' << endsOf(session.errors);
                    });
                    const Session session;
                    return session.handle == 0 ? 1 : 0;
                }()),
                testing::ExitedWithCode(0), std::string("^0 ") + refusal);
}

TEST_F(FlashDriveThreads, AnUpdateOutsideIsRefused)
{
    EXPECT_EXIT(std::_Exit([] {
                    makeMachine();
                    const Device device;
                    EarlierThread outside;
                    const Scan scan;
                    Session session;
                    outside.run([&] { session.start(1, device.file()); });
                    std::cerr << endsOf(session.errors) << ' ' << session.poll(1).status;
                    return scan.result;
                }()),
                testing::ExitedWithCode(0), std::string("^") + refusal + " 0$");
}

TEST_F(FlashDriveThreads, ThreadsStartedAfterTheScanUpdateTheDevice)
{
    EXPECT_EXIT(std::_Exit([] {
                    makeMachine();
                    const Device device;
                    const Scan scan;
                    std::thread([&] {
                        Session session;
                        session.start(1, device.file());
                        std::cerr << endsOf(session.errors) << session.poll(1).status << ' '
                                  << readText(flashPath / "file");
                    }).join();
                    return scan.result;
                }()),
                testing::ExitedWithCode(0), "^1 the drive's$");
}

TEST_F(FlashDriveThreads, TheScanningThreadNeedNotBeTheFirst)
{
    EXPECT_EXIT(std::_Exit([] {
                    makeMachine();
                    const Device device;
                    std::thread([&] {
                        const Scan first;
                        const Scan second;
                        std::cerr << second.result << ' ' << readText(flashPath / "file") << ", ";
                    }).join();
                    const Session session;
                    std::cerr << session.handle << ' ' << readText(flashPath / "file");
                    return 0;
                }()),
                testing::ExitedWithCode(0), "^0 the drive's, 0 the machine's$");
}

TEST_F(FlashDriveThreads, ATargetDirectlyInMntIsRefusedInWhicheverThreadCoveredIt)
{
    EXPECT_EXIT(std::_Exit([] {
                    makeOwnMnt();  // without a place for the drive, which is made
                    const Device device;
                    int result = 0;
                    std::thread([&] {
                        const Scan first;
                        writeText("/mnt/target.json", R"({"tree": {"id": "ROOT"}})");  // nobody else sees it
                        ::setenv("TRELLAN_TARGET", "/mnt/target.json", 1);
                        result = Scan().result;
                    }).join();
                    return result;
                }()),
                testing::ExitedWithCode(1), "beside a flash drive a target must not lie directly in /mnt");
}
