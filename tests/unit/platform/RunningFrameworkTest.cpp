#include "process/RunningFramework.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

using ostrel::bundle_reader::Framework;
using ostrel::process::runningFramework;

namespace {

/// The framework whose library this process has in its memory.
Framework mappedFramework()
{
    std::ifstream maps{"/proc/self/maps"};
    for (std::string line; std::getline(maps, line);) {
        if (line.find("/libostrel_framework.so") != std::string::npos) {
            return Framework::embedded;
        }
        if (line.find("/libCppMicroServices.so") != std::string::npos) {
            return Framework::installed;
        }
    }
    return Framework::none;
}

TEST(RunningFramework, GivenProgramOnFramework_WhenAsked_ThenThatIsTold)
{
    const Framework expected = mappedFramework();

    EXPECT_NE(expected, Framework::none);
    EXPECT_EQ(runningFramework(), expected);
    EXPECT_EQ(runningFramework(), expected) << "the second time";
}

} // namespace
