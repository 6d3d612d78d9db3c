#include "LoopMount.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/loop.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace {

int check(int result, const std::string& operation)
{
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), operation);
    }
    return result;
}

class Descriptor {
public:
    Descriptor(const std::string& path, int flags) : number(check(::open(path.c_str(), flags | O_CLOEXEC), path)) {}
    ~Descriptor() { ::close(number); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return number; }

private:
    int number;
};

// The device gives the image up when nobody uses it any more: it must be open until it is mounted.
bool tryMounting(int image, const std::string& device, const std::filesystem::path& folder, const std::string& options)
{
    const Descriptor loop(device, O_RDWR);
    loop_config configuration = {};
    configuration.fd = static_cast<unsigned>(image);
    configuration.info.lo_flags = LO_FLAGS_AUTOCLEAR;
    if (::ioctl(loop.get(), LOOP_CONFIGURE, &configuration) < 0) {
        if (errno == EBUSY) {
            return false;  // somebody else was faster
        }
        throw std::system_error(errno, std::generic_category(), "configure " + device);
    }
    check(::mount(device.c_str(), folder.c_str(), "ext4", 0, options.c_str()), "mount " + device);
    return true;
}

}  // namespace

LoopMount::LoopMount(const std::filesystem::path& image, const std::filesystem::path& folder,
                     const std::string& options)
    : folder(folder)
{
    const Descriptor control("/dev/loop-control", O_RDWR);
    const Descriptor file(image, O_RDWR);
    std::string device;
    do {
        device = "/dev/loop" + std::to_string(check(::ioctl(control.get(), LOOP_CTL_GET_FREE), "find a loop device"));
    } while (!tryMounting(file.get(), device, folder, options));
}

LoopMount::~LoopMount()
{
    EXPECT_EQ(::umount2(folder.c_str(), 0), 0) << "somebody else may still write to the image";
}
