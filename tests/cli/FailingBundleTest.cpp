#include "cli/ProgramRun.h"
#include "support/TemporaryDirectory.h"
#include "support/TestBundles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace ostrel::test {

using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// Runs the host over a directory with one bundle of tests/bundles.
class FailingBundle : public testing::Test {
protected:
    ProgramResult runWith(const std::string& target, const std::string& level = "problems") const
    {
        const std::filesystem::path file = testBundle(target);
        std::filesystem::copy_file(file, directory.path() / file.filename());
        return run(level);
    }

    ProgramResult run(const std::string& level = "problems") const
    {
        ProgramResult result = runHost({"run", directory.path(), "--log-level", level});
        result.out = withoutPath(result.out, directory.path());
        result.err = withoutPath(result.err, directory.path());
        return result;
    }

    const TemporaryDirectory directory;
};

} // namespace

TEST_F(FailingBundle, GivenStartThrows_ThenStatusFourAndTheFileIsNamed)
{
    const ProgramResult result = runWith("start_throws");

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, R"(ostrel-host: error: <bundles>/libstart_throws.so: the bundles cannot be started
  why: Bundle start_throws (location= <bundles>/libstart_throws.so) start failed: planned fault: start_throws
  do:  repair the bundle, take it out of the directory, or refuse it by other conditions
)");
}

TEST_F(FailingBundle, GivenStartThrowsNoException_ThenStatusFour)
{
    const ProgramResult result = runWith("start_throws_int");

    EXPECT_EQ(result.status, 4);
    EXPECT_THAT(result.err, HasSubstr("start failed: unknown\n"));
}

TEST_F(FailingBundle, GivenMissingSymbol_ThenStatusFourAndTheSymbolIsNamed)
{
    const ProgramResult result = runWith("missing_symbol");

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err,
                StartsWith("ostrel-host: error: <bundles>/libmissing_symbol.so: the bundles cannot be started\n"
                           "  why: Error loading <bundles>/libmissing_symbol.so. "));
    EXPECT_THAT(result.err, HasSubstr("ostrelTestNobodyDefinesThis"));
}

TEST_F(FailingBundle, GivenNoComponentName_ThenStatusFourAndTheKeyIsNamed)
{
    const ProgramResult result = runWith("no_component_name");

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(
        result.err,
        R"(ostrel-host: error: <bundles>/libno_component_name.so: the bundle no_component_name has no component name [no-component-name]
  why: its manifest has no "zq": {"component": {"name": ...}}
  do:  add the component name to the manifest and build the bundle again
)");
}

TEST_F(FailingBundle, GivenStopThrows_ThenTheReportIsWrittenAndStatusFour)
{
    const ProgramResult result = runWith("stop_throws");

    EXPECT_EQ(result.status, 4);
    EXPECT_THAT(result.out, StartsWith("Bundles:\n    stop_throws, 1, ACTIVE\n"));
    EXPECT_EQ(result.err, "ostrel-host: error: <bundles>/libstop_throws.so: not everything was unloaded in order\n"
                          "  why: Error while stoping <bundles>/libstop_throws.so: Bundle stop_throws "
                          "(location=<bundles>/libstop_throws.so), BundleActivator::Stop() failed: planned fault: "
                          "stop_throws\n"
                          "  do:  repair the bundle's Stop()\n");
}

TEST_F(FailingBundle, GivenLogLevelNone_WhenStopThrows_ThenTheStatusIsTheSame)
{
    EXPECT_EQ(runWith("stop_throws", "none").status, 4);
}

TEST_F(FailingBundle, GivenTextNamedLikeALibrary_ThenStatusFourAndTheFileIsNamed)
{
    directory.write("libnotes.so", "only notes\n");

    const ProgramResult result = run();

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, R"(ostrel-host: error: <bundles>/libnotes.so: the file is no bundle [not-a-bundle]
  why: it is neither a shared object nor a zip archive
  do:  build it again, or take it out of the directory
)");
}

TEST_F(FailingBundle, GivenOneAfterAGoodOne_ThenNothingIsReported)
{
    const std::filesystem::path good = testBundle("stop_throws_int");
    std::filesystem::copy_file(good, directory.path() / "a_first.so");

    const ProgramResult result = runWith("start_throws");

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.out, "");
}

TEST(FailingService, GivenFactoryThrowsNoException_ThenStatusFourAndNothingIsReported)
{
    const ProgramResult result = runHost({"run", OSTREL_TEST_FACTORY_THROWS_INT});

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "ostrel-host: error: " OSTREL_TEST_FACTORY_THROWS_INT ": the services cannot be loaded\n"
                          "  why: a bundle threw something that is no std::exception\n"
                          "  do:  repair the bundle, take it out of the directory, or refuse it by other "
                          "conditions\n");
}

} // namespace ostrel::test
