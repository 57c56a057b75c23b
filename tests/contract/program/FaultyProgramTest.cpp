#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"

#include <cppmicroservices/Bundle.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

namespace {

using namespace cppmicroservices;
using ostrel::test::stopAndWait;
using ostrel::test::thrownText;

TEST(FaultyProgram, isReportedByInit)
{
    auto const location = std::filesystem::read_symlink("/proc/self/exe").string();
    auto const text = "Failed to install bundle library at " + location +
                      ": bundle.symbolic_name is not defined in the bundle manifest for bundle "
                      "contract_faulty_program (location=" +
                      location + ").";
    auto framework = FrameworkFactory().NewFramework();
    EXPECT_EQ(text, thrownText<std::runtime_error>([&] { framework.Init(); }));
    EXPECT_EQ(Bundle::STATE_STARTING, framework.GetState());
    framework.Start();
    EXPECT_EQ(Bundle::STATE_ACTIVE, framework.GetState());
    EXPECT_EQ(1U, framework.GetBundleContext().GetBundles().size());
    stopAndWait(framework);
    EXPECT_EQ(text, thrownText<std::runtime_error>([&] { framework.Start(); }));
    EXPECT_EQ(Bundle::STATE_STARTING, framework.GetState());
    stopAndWait(framework);
}

} // namespace
