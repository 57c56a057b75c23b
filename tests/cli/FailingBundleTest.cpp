#include "cli/ProgramRun.h"
#include "cli/ZipBundle.h"
#include "support/TemporaryDirectory.h"
#include "support/TestBundles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace ostrel::test {

using testing::AnyOf;
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
        ProgramResult result = runHost({"run", directory.path(), "--report", "--log-level", level});
        result.out = withoutPath(result.out, directory.path());
        result.err = withoutPath(result.err, directory.path());
        return result;
    }

    static std::string stopThrows(const std::string& name, const std::string& why)
    {
        return "ostrel-host: error: <bundles>/lib" + name + ".so: the bundle \"" + name +
               "\" did not stop in order: its stop threw an exception [stop-throws]\n  why: " + why +
               "\n  do:  repair its activator's Stop()\n";
    }

    const TemporaryDirectory directory;
};

} // namespace

TEST_F(FailingBundle, GivenStartThrows_ThenStatusFourAndTheFileIsNamed)
{
    const ProgramResult result = runWith("start_throws");

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(
        result.err,
        R"(ostrel-host: error: <bundles>/libstart_throws.so: the bundle "start_throws" did not start: its start threw an exception [start-throws]
  why: planned fault: start_throws
  do:  repair its activator, or refuse the bundle by other conditions
)");
}

TEST_F(FailingBundle, GivenStartThrowsNoException_ThenItSaysSo)
{
    const ProgramResult result = runWith("start_throws_int");

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(
        result.err,
        R"(ostrel-host: error: <bundles>/libstart_throws_int.so: the bundle "start_throws_int" did not start: its start threw something that is no std::exception [start-throws]
  why: the framework does not tell what it was
  do:  repair its activator, or refuse the bundle by other conditions
)");
}

TEST_F(FailingBundle, GivenMissingSymbol_ThenItIsNamed)
{
    const ProgramResult result = runWith("missing_symbol");

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(
        result.err,
        R"(ostrel-host: error: <bundles>/libmissing_symbol.so: the bundle "missing_symbol" did not start: it needs the symbol 'ostrelTestNobodyDefinesThis', which nothing defines [undefined-symbol]
  why: neither its own library nor one that it is linked with defines the symbol
  do:  add the source or link the library that defines it, and build the bundle again
)");
}

TEST_F(FailingBundle, GivenArchiveWithActivator_ThenItsLibraryCannotBeLoaded)
{
    directory.write("a.zip", zipBundle("a", R"({"bundle.symbolic_name": "a", "bundle.activator": true,
                                               "zq": {"component": {"name": "a"}}})"));

    const ProgramResult result = run();

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(
        result.err,
        R"(ostrel-host: error: <bundles>/a.zip: the bundle "a" did not start: its library cannot be loaded [start-throws]
  why: <bundles>/a.zip: invalid ELF header
  do:  build the bundle again
)");
}

TEST_F(FailingBundle, GivenNoActivator_ThenTheMacroIsNamed)
{
    std::filesystem::copy_file(std::filesystem::path{OSTREL_TEST_FAULTS} / "no_activator.so",
                               directory.path() / "no_activator.so");

    const ProgramResult result = run();

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(
        result.err,
        R"(ostrel-host: error: <bundles>/no_activator.so: the bundle "no_activator" did not start: its library has no activator of the bundle 'no_activator' [activator-missing]
  why: the manifest says "bundle.activator": true, and the library does not export _us_create_activator_no_activator and _us_destroy_activator_no_activator
  do:  write CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(<class>) in one of its sources, or take "bundle.activator" out of the manifest if the bundle has none
)");
}

TEST_F(FailingBundle, GivenNoComponentName_ThenStatusFourAndTheKeyIsNamed)
{
    const ProgramResult result = runWith("no_component_name");

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(
        result.err,
        R"(ostrel-host: error: <bundles>/libno_component_name.so: the bundle "no_component_name" has no component name [no-component-name]
  why: its manifest has no "zq": {"component": {"name": ...}}, by which the container knows a bundle
  do:  add it to the manifest, and build the bundle again
ostrel-host: note: nothing is started; with --keep-going the rest would be
)");
}

TEST_F(FailingBundle, GivenStopThrows_ThenTheReportIsWrittenAndStatusFour)
{
    const ProgramResult result = runWith("stop_throws");

    EXPECT_EQ(result.status, 4);
    EXPECT_THAT(result.out, StartsWith("Bundles:\n    stop_throws, 1, ACTIVE\n"));
    EXPECT_EQ(result.err, stopThrows("stop_throws", "planned fault: stop_throws"));
}

TEST_F(FailingBundle, GivenSeveralStopsThatThrow_ThenEachIsTold)
{
    std::filesystem::copy_file(testBundle("stop_throws_int"), directory.path() / "libstop_throws_int.so");

    const ProgramResult result = runWith("stop_throws");

    EXPECT_EQ(result.status, 4);
    const std::string one = stopThrows("stop_throws", "planned fault: stop_throws");
    const std::string other = stopThrows("stop_throws_int", "it threw something that is no std::exception");
    // Nobody promises in which order bundles are stopped.
    EXPECT_THAT(result.err, AnyOf(one + other, other + one));
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
  do:  build it again if it is to be a bundle; else take it out of the directory
ostrel-host: note: nothing is started; with --keep-going the rest would be
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

TEST_F(FailingBundle, GivenBundleThatStartsAFailingOne_ThenTheFailingOneIsNamed)
{
    std::filesystem::copy_file(std::filesystem::path{OSTREL_TEST_FAULTS} / "starts_another.so",
                               directory.path() / "a_very_long_name_of_the_file_of_the_bundle_that_starts_another.so");

    const ProgramResult result = runWith("start_throws");

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(
        result.err,
        R"(ostrel-host: error: <bundles>/libstart_throws.so: the bundle "start_throws" did not start: its start threw an exception [start-throws]
  why: planned fault: start_throws
  do:  repair its activator, or refuse the bundle by other conditions
)");
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
