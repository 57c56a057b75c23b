// exit() inside of a stop that a container asked for: the container, a static object, then asks for it again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <unistd.h>

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

TEST(ExitDeathTest, isASecondStopThatIsRefusedAndLogged)
{
    auto const run = [] {
        execl(OSTREL_EXIT_PROGRAM, OSTREL_EXIT_PROGRAM, "exit in Stop, called by the container", nullptr);
        std::_Exit(126);
    };
    EXPECT_EXIT(run(), ::testing::ExitedWithCode(0),
                AllOf(HasSubstr("Error while stoping libalpha.so: Bundle alpha (location=libalpha.so): Stop() was "
                                "called from inside the bundle's own activator"),
                      HasSubstr("\nDid not stop libalpha.so\n"),
                      HasSubstr("\nError while stoping libstop_throws.so: Bundle stop_throws")));
}

} // namespace
