// Containers that unload while the process ends, in programs that link the libraries in either order.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ostream>
#include <string>
#include <unistd.h>

namespace ostrel::test {
namespace {

struct Program {
    const char* name;
    const char* path;

    friend std::ostream& operator<<(std::ostream& stream, const Program& program) { return stream << program.name; }
};

using ExitDeathTest = ::testing::TestWithParam<Program>;

[[noreturn]] void become(const Program& program, const char* end)
{
    execl(program.path, program.path, end, nullptr);
    std::_Exit(126);
}

const std::string stopFailed =
    "Error while stoping libstop_throws.so: Bundle stop_throws \\(location=libstop_throws.so\\), "
    "BundleActivator::Stop\\(\\) failed: planned fault: stop_throws\n$";
const std::string earlier =
    "^Unable to install bundle: \nUnable to install bundle: , cause: installBundles: 'absent.so'[^\n]*\n";

TEST_P(ExitDeathTest, GivenNoRecordBefore_WhenAStaticContainerUnloads_ThenItsRecordReachesTheSink)
{
    EXPECT_EXIT(become(GetParam(), "without an earlier record"), ::testing::ExitedWithCode(0), "^" + stopFailed);
}

TEST_P(ExitDeathTest, GivenARecordBefore_WhenAStaticContainerUnloads_ThenItsRecordReachesTheSink)
{
    EXPECT_EXIT(become(GetParam(), "after an earlier record"), ::testing::ExitedWithCode(0), earlier + stopFailed);
}

TEST_P(ExitDeathTest, GivenExitInStop_WhenAStaticContainerUnloads_ThenItsRecordReachesTheSink)
{
    EXPECT_EXIT(become(GetParam(), "exit in Stop, called by the host"), ::testing::ExitedWithCode(0),
                earlier + stopFailed);
}

TEST_P(ExitDeathTest, GivenExitInStopOnAnotherThread_WhenAStaticContainerUnloads_ThenItsRecordReachesTheSink)
{
    EXPECT_EXIT(become(GetParam(), "exit in Stop, on another thread"), ::testing::ExitedWithCode(0),
                earlier + stopFailed);
}

INSTANTIATE_TEST_SUITE_P(Linked, ExitDeathTest,
                         ::testing::Values(Program{"ContainerFirst", OSTREL_EXIT_CONTAINER_FIRST},
                                           Program{"LogFirst", OSTREL_EXIT_LOG_FIRST}),
                         [](const auto& info) { return info.param.name; });

} // namespace
} // namespace ostrel::test
