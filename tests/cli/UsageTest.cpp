#include "cli/ProgramRun.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ostrel::test {

using testing::HasSubstr;

namespace {

struct BadUsage {
    const char* name;
    std::vector<std::string> arguments;
    const char* err;
};

class Usage : public testing::TestWithParam<BadUsage> {};

const char* const noEquals = R"(ostrel-host: cannot understand a condition
  where: option --when 'language'
  why:   there is no '=' in it
  do:    write it as --when NAME=VALUE
)";
const char* const noName = R"(ostrel-host: cannot understand a condition
  where: option --require '=en'
  why:   there is no name before the '='
  do:    write it as --require NAME=VALUE
)";
const char* const twiceWhen = R"(ostrel-host: cannot use contradicting conditions
  where: option --when 'a=2'
  why:   a condition on 'a' was given before
  do:    give each NAME once, with either --when or --require
)";
const char* const twiceRequire = R"(ostrel-host: cannot use contradicting conditions
  where: option --require 'a=1'
  why:   a condition on 'a' was given before
  do:    give each NAME once, with either --when or --require
)";

std::string commandLineError(const std::string& why, const std::string& command = "run ")
{
    return "ostrel-host: cannot understand the command line\n  where: the arguments\n  why:   " + why +
           "\n  do:    see 'ostrel-host " + command + "--help'\n";
}

} // namespace

TEST_P(Usage, GivenBadArguments_ThenOneMessageAndStatusTwo)
{
    const ProgramResult result = runHost(GetParam().arguments);

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, GetParam().err);
    EXPECT_EQ(result.out, "");
}

INSTANTIATE_TEST_SUITE_P(
    Conditions, Usage,
    testing::Values(BadUsage{"NoEquals", {"run", ".", "--when", "language"}, noEquals},
                    BadUsage{"NoName", {"run", ".", "--require", "=en"}, noName},
                    BadUsage{"TwiceWhen", {"run", ".", "--when", "a=1", "--when", "a=2"}, twiceWhen},
                    BadUsage{"TwiceSameValue", {"run", ".", "--require", "a=1", "--require=a=1"}, twiceRequire},
                    BadUsage{"TwiceByBothOptions", {"run", ".", "--require", "a=1", "--when=a=2"}, twiceRequire}),
    [](const auto& info) { return info.param.name; });

TEST(CommandLine, GivenNoCommand_ThenStatusTwo)
{
    const ProgramResult result = runHost({});

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, commandLineError("A subcommand is required", ""));
}

TEST(CommandLine, GivenUnknownCommand_ThenStatusTwo)
{
    const ProgramResult result = runHost({"walk"});

    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, HasSubstr("ostrel-host: cannot understand the command line\n"));
}

TEST(CommandLine, GivenNoDirectory_ThenStatusTwo)
{
    const ProgramResult result = runHost({"run"});

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, commandLineError("DIR is required"));
}

TEST(CommandLine, GivenTwoDirectories_ThenStatusTwo)
{
    const ProgramResult result = runHost({"run", ".", "surplus"});

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, commandLineError("The following argument was not expected: surplus"));
}

TEST(CommandLine, GivenUnknownOption_ThenStatusTwo)
{
    const ProgramResult result = runHost({"run", ".", "--bogus"});

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, commandLineError("The following argument was not expected: --bogus"));
}

TEST(CommandLine, GivenConditionOptionWithoutValue_ThenStatusTwo)
{
    EXPECT_EQ(runHost({"run", ".", "--when"}).status, 2);
}

TEST(CommandLine, GivenUnknownLogLevel_ThenTheLevelsAreNamed)
{
    const ProgramResult result = runHost({"run", ".", "--log-level", "loud"});

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, commandLineError("--log-level: loud not in {all,decisions,none,problems}"));
}

TEST(CommandLine, GivenConditionBeforeDirectory_ThenTheDirectoryIsNotTakenForAValue)
{
    const TemporaryDirectory empty;

    EXPECT_EQ(runHost({"run", "--when", "a=1", empty.path()}).status, 0);
}

TEST(CommandLine, GivenValueEmptyOrWithEquals_ThenItIsAccepted)
{
    const TemporaryDirectory empty;

    EXPECT_EQ(runHost({"run", empty.path(), "--when", "a=", "--when", "b=c=d"}).status, 0);
}

TEST(CommandLine, GivenVersion_ThenItGoesToStandardOutput)
{
    const ProgramResult result = runHost({"--version"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "ostrel-host " OSTREL_TEST_VERSION "\n");
    EXPECT_EQ(result.err, "");
}

TEST(CommandLine, GivenHelp_ThenItDocumentsEveryExitStatus)
{
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--help"}, {"run", "--help"}}) {
        const ProgramResult result = runHost(arguments);

        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.err, "");
        EXPECT_THAT(result.out, HasSubstr(R"(Exit status:
  0  done; also when the conditions admit no bundle
  1  unforeseen error
  2  the command line cannot be understood
  3  the bundle directory does not exist, is no directory or cannot be read
  4  a bundle cannot be installed, started, loaded from, reported or stopped
  5  the plug-in framework does not start or stop
  6  standard output cannot be written
)"));
    }
}

} // namespace ostrel::test
