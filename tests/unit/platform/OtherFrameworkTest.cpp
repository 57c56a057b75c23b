// A program that has a library named like the other framework in it, before its own framework's.

#include "process/RunningFramework.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <string_view>

using ostrel::bundle_reader::Framework;

extern "C" int unitFramework();

namespace {

Framework frameworkOf(int (*function)())
{
    Dl_info holder{};
    if (::dladdr(reinterpret_cast<const void*>(function), &holder) == 0) {
        return Framework::none;
    }
    const std::string_view path{holder.dli_fname};
    return ostrel::bundle_reader::frameworkNamed(path.substr(path.rfind('/') + 1));
}

TEST(OtherFramework, GivenLibraryNamedLikeIt_WhenFrameworkIsAsked_ThenItIsTheOneThatHoldsTheFactory)
{
    const Framework other = frameworkOf(unitFramework);
    ASSERT_NE(other, Framework::none);

    EXPECT_EQ(ostrel::process::runningFramework(),
              other == Framework::embedded ? Framework::installed : Framework::embedded);
}

} // namespace
