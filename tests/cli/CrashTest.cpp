#include "cli/FaultRun.h"

#include <gmock/gmock.h>

#include <csignal>

namespace ostrel::test {

using testing::MatchesRegex;

namespace {

/// Bundles that end the process by a signal.
class Crash : public FaultRun {
protected:
    void expectCrash(const std::string& name, int signal, const std::string& didWhat, const std::string& why) const
    {
        const ProgramResult result = runWith(name);

        EXPECT_EQ(result.status, 128 + signal);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, crash(name, didWhat, why));
    }

    static std::string crash(const std::string& name, const std::string& didWhat, const std::string& why)
    {
        return "ostrel-host: error: <bundles>/" + name + ".so: the bundle \"" + name + "\" crashed " + didWhat +
               " [crashes]\n  why: " + why +
               "\n  do:  repair the bundle, or take it out of the directory; a debugger or a core dump shows the "
               "place\n";
    }

    static std::string uncaught(const std::string& name, const std::string& during)
    {
        return "ostrel-host: error: <bundles>/" + name + ".so: the bundle \"" + name + "\" crashed " + during +
               ": uncaught exception std::runtime_error: planned\\x1B[31m\\nfault [crashes]\n"
               "  why: the C++ library ends the process then\n"
               "  do:  catch it in the bundle, or take the bundle out of the directory\n";
    }
};

const char* const address = "it used the address 0x1208, which it may not";

} // namespace

TEST_F(Crash, GivenStart_ThenBundleFileAndStepAreNamed)
{
    expectCrash("crashes_in_start", SIGSEGV, "while it was being started: SIGSEGV (segmentation fault)", address);
}

TEST_F(Crash, GivenFactory_ThenTheBundleWhoseCodeItIsIsNamed)
{
    add("prints");
    const ProgramResult result = runWith("crashes_in_factory");

    EXPECT_EQ(result.status, 128 + SIGSEGV);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "start: write\n" + crash("crashes_in_factory",
                                       "while the services were being loaded: SIGSEGV (segmentation fault)", address));
}

TEST_F(Crash, GivenFileOfSeveralBundles_ThenAllOfThemAreNamed)
{
    const ProgramResult result = runWith("passengers");

    EXPECT_EQ(result.status, 128 + SIGSEGV);
    EXPECT_EQ(result.err.substr(0, result.err.find('\n')),
              "ostrel-host: error: <bundles>/passengers.so: one of the bundles \"passenger_a\", \"passenger_b\", "
              "\"passengers\" "
              "crashed while the services were being loaded: SIGSEGV (segmentation fault) [crashes]");
}

TEST_F(Crash, GivenThreadOfABundle_ThenTheBundleWhoseCodeItIsIsNamed)
{
    expectCrash("crashes_in_thread", SIGSEGV,
                "on another thread while the bundles were being started: SIGSEGV (segmentation fault)", address);
}

TEST_F(Crash, GivenStop_ThenTheReportIsWrittenBefore)
{
    const ProgramResult result = runWith("crashes_in_stop", {"--report"});

    EXPECT_EQ(result.status, 128 + SIGSEGV);
    EXPECT_EQ(result.out.substr(0, 41), "Bundles:\n    crashes_in_stop, 1, ACTIVE\n ");
    EXPECT_EQ(result.err,
              crash("crashes_in_stop", "while it was being stopped: SIGSEGV (segmentation fault)", address));
}

TEST_F(Crash, GivenStaticDestructor_ThenTheBundleIsNamed)
{
    const ProgramResult result = runWith("crashes_in_destructor");

    EXPECT_EQ(result.status, 128 + SIGSEGV);
    EXPECT_EQ(result.err,
              crash("crashes_in_destructor", "while the process was ending: SIGSEGV (segmentation fault)", address));
}

TEST_F(Crash, GivenBundleThatAnotherOneStarts_ThenTheInnerOneIsNamed)
{
    add("starts_another", "a.so");

    expectCrash("crashes_in_start", SIGSEGV, "while it was being started: SIGSEGV (segmentation fault)", address);
}

TEST_F(Crash, GivenBundleThatAnotherOneStops_ThenTheInnerOneIsNamed)
{
    add("closes_others", "z.so"); // started last

    EXPECT_EQ(runWith("crashes_in_stop").err,
              crash("crashes_in_stop", "while it was being stopped: SIGSEGV (segmentation fault)", address));
}

TEST_F(Crash, GivenBundleThatSurvivesTheFailureOfAnother_ThenItIsNamedItself)
{
    add("throws_in_start", "z.so");

    expectCrash("crashes_after_failure", SIGSEGV, "while it was being started: SIGSEGV (segmentation fault)", address);
}

TEST_F(Crash, GivenAbort_ThenItSaysSo)
{
    expectCrash("aborts_in_start", SIGABRT, "while it was being started: SIGABRT (abort)",
                "it called abort(), or a check within it failed");
}

TEST_F(Crash, GivenEndlessRecursion_ThenItSaysSo)
{
    expectCrash("overflows_in_start", SIGSEGV, "while it was being started: SIGSEGV (segmentation fault)",
                "it used up its stack, as endless recursion does");
}

TEST_F(Crash, GivenSignalThatItRaises_ThenItSaysSo)
{
    expectCrash("raises_in_start", SIGTRAP, "while it was being started: SIGTRAP (breakpoint)",
                "it sent itself the signal");
}

TEST_F(Crash, GivenSignalOfAnotherProcess_ThenTheBundleIsNotBlamed)
{
    const ProgramResult result = runWith("isEnded_in_start");

    EXPECT_EQ(result.status, 128 + SIGABRT);
    EXPECT_THAT(
        result.err,
        MatchesRegex("ostrel-host: error: <bundles>/isEnded_in_start.so: the bundle \"isEnded_in_start\" was ended "
                     "while it was being started: SIGABRT \\(abort\\) \\[crashes\\]\n"
                     "  why: the process [0-9]+ sent the signal\n"
                     "  do:  repair the bundle, or take it out of the directory; a debugger or a core dump "
                     "shows the place\n"));
}

TEST_F(Crash, GivenStackThatNobodyCanWalkAlong_ThenTheStepIsNamed)
{
    const ProgramResult result = runWith("losesItsStack_in_factory");

    EXPECT_EQ(result.status, 128 + SIGSEGV);
    EXPECT_THAT(result.err,
                MatchesRegex("ostrel-host: error: the program crashed while the services were being loaded: SIGSEGV "
                             "\\(segmentation fault\\) \\[crashes\\]\n"
                             "  why: it used the address 0x[0-9a-f]+, which it may not\n"
                             "  do:  repair the bundle, or take it out of the directory; a debugger or a core dump "
                             "shows the place\n"));
}

TEST_F(Crash, GivenStaticConstructorThatThrows_ThenTheBundleAndTheExceptionAreNamed)
{
    const ProgramResult result = runWith("throws_in_constructor");

    EXPECT_EQ(result.status, 128 + SIGABRT);
    EXPECT_EQ(result.err, uncaught("throws_in_constructor", "while it was being started"));
}

TEST_F(Crash, GivenStaticDestructorThatThrows_ThenTheBundleAndTheExceptionAreNamed)
{
    const ProgramResult result = runWith("throws_in_destructor");

    EXPECT_EQ(result.status, 128 + SIGABRT);
    EXPECT_EQ(result.err, uncaught("throws_in_destructor", "while the process was ending"));
}

TEST_F(Crash, GivenThreadThatThrows_ThenTheBundleAndTheExceptionAreNamed)
{
    const ProgramResult result = runWith("throws_in_thread");

    EXPECT_EQ(result.status, 128 + SIGABRT);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, uncaught("throws_in_thread", "on another thread while the bundles were being started"));
}

TEST_F(Crash, GivenChildrenThatExitAndCrash_ThenNothingIsTold)
{
    const ProgramResult result = runWith("forks_in_start");

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
}

} // namespace ostrel::test
