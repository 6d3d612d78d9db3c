// Refusals of the operating system as errors.
#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>
#include <string>

#include "allocations/Allocations.h"
#include "simulation/target/SystemFault.h"

using namespace TrellanSimulation;

namespace {

constexpr const char* place = "/mnt/cn/cfdrive/a/long/path";

std::string textOf(const std::function<void()>& operation)
{
    try {
        operation();
    } catch (const std::system_error& fault) {
        return fault.what();
    }
    return "no fault";
}

}  // namespace

TEST(SystemFaults, TellTheOperationItsPlaceAndTheReason)
{
    EXPECT_EQ(textOf([] {
                  errno = EBUSY;
                  checkSystem(-1, "unmount", place);
              }),
              "unmount /mnt/cn/cfdrive/a/long/path: Device or resource busy");
    EXPECT_EQ(textOf([] {
                  errno = ENOENT;
                  checkSystem(FileDescriptor(), "open", place);
              }),
              "open /mnt/cn/cfdrive/a/long/path: No such file or directory");
    EXPECT_EQ(textOf([] {
                  errno = EPERM;
                  checkSystem(-1, "chdir ..");
              }),
              "chdir ..: Operation not permitted");
}

// Otherwise what was done would not be known to be done when memory is short.
TEST(SystemFaults, NeedNoMemoryWhereThereIsNone)
{
    EXPECT_EQ(allocationsOf([] { EXPECT_EQ(checkSystem(7, "mount something somewhere", place), 7); }), 0u);
    EXPECT_EQ(allocationsOf([] { checkSystem(FileDescriptor(::dup(0)), "open something somewhere", place); }), 0u);
}
