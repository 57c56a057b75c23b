#include "cli/ProgramRun.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ostrel::test {

namespace {

struct BadUsage {
    const char* name;
    std::vector<std::string> arguments;
    const char* err;
};

class Usage : public testing::TestWithParam<BadUsage> {};

const auto nameOf = [](const auto& info) { return info.param.name; };

const char* const noEquals = R"(ostrel-host: error: the condition --when 'language' cannot be understood
  why: there is no '=' in it
  do:  write it as --when NAME=VALUE
)";
const char* const noName = R"(ostrel-host: error: the condition --require '=en' cannot be understood
  why: there is no name before the '='
  do:  write it as --require NAME=VALUE
)";
const char* const twiceWhen = R"(ostrel-host: error: the condition --when 'a=2' contradicts another
  why: a condition on 'a' was given before
  do:  give each NAME once, with either --when or --require
)";
const char* const twiceRequire = R"(ostrel-host: error: the condition --require 'a=1' contradicts another
  why: a condition on 'a' was given before
  do:  give each NAME once, with either --when or --require
)";
const char* const escapedCondition = R"(ostrel-host: error: the condition --when 'a\nb\x1B[2J' cannot be understood
  why: there is no '=' in it
  do:  write it as --when NAME=VALUE
)";

const char* const noCommand = R"(ostrel-host: error: no command was given
  why: the commands are: run, plan, explain, inspect
  do:  see 'ostrel-host --help'
)";
const char* const unknownCommand = R"(ostrel-host: error: unknown command 'walk'
  why: the commands are: run, plan, explain, inspect
  do:  see 'ostrel-host --help'
)";
const char* const misspeltCommand = R"(ostrel-host: error: unknown command 'rnu'
  why: the commands are: run, plan, explain, inspect
  do:  did you mean run? see 'ostrel-host --help'
)";
const char* const noDirectory = R"(ostrel-host: error: DIR is required
  why: the usage is: ostrel-host run [OPTIONS] DIR
  do:  see 'ostrel-host run --help'
)";
const char* const surplus = R"(ostrel-host: error: unexpected argument 'surplus\x1B'
  why: 'run' takes no more
  do:  see 'ostrel-host run --help'
)";
const char* const dash = R"(ostrel-host: error: unexpected argument '-'
  why: 'run' takes no more
  do:  see 'ostrel-host run --help'
)";
const char* const unknownOption = R"(ostrel-host: error: unknown option '--bogus'
  why: 'run' has the options --help, --when, --require, --plan, --keep-going, --report, --console, --log-level, --timeout
  do:  see 'ostrel-host run --help'
)";
const char* const misspeltOption = R"(ostrel-host: error: unknown option '--wehn'
  why: 'run' has the options --help, --when, --require, --plan, --keep-going, --report, --console, --log-level, --timeout
  do:  did you mean --when? see 'ostrel-host run --help'
)";
const char* const optionOfTheProgram = R"(ostrel-host: error: unknown option '--bogus'
  why: ostrel-host has the options --help, --version
  do:  see 'ostrel-host --help'
)";
const char* const noValue = R"(ostrel-host: error: --when: 1 required NAME=VALUE missing
  why: the usage is: ostrel-host run [OPTIONS] DIR
  do:  see 'ostrel-host run --help'
)";
const char* const unknownLevel = R"(ostrel-host: error: unknown level 'loud' of --log-level
  why: the levels are: none, problems, decisions, all
  do:  give one of them
)";
const char* const misspeltLevel = R"(ostrel-host: error: unknown level 'problem' of --log-level
  why: the levels are: none, problems, decisions, all
  do:  did you mean problems?
)";

std::string noSeconds(const std::string& value)
{
    return "ostrel-host: error: --timeout '" + value +
           "' cannot be understood\n  why: it is no number of seconds above zero\n"
           "  do:  write it as --timeout 30, or as --timeout 0.5\n";
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
                    BadUsage{"TwiceByBothOptions", {"run", ".", "--require", "a=1", "--when=a=2"}, twiceRequire},
                    BadUsage{"ControlCharacters", {"run", ".", "--when", "a\nb\x1b[2J"}, escapedCondition}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(Commands, Usage,
                         testing::Values(BadUsage{"None", {}, noCommand},
                                         BadUsage{"Unknown", {"walk", "."}, unknownCommand},
                                         BadUsage{"Misspelt", {"rnu", "."}, misspeltCommand}),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(
    Arguments, Usage,
    testing::Values(BadUsage{"NoDirectory", {"run"}, noDirectory},
                    BadUsage{"TwoDirectories", {"run", ".", "surplus\x1b"}, surplus},
                    BadUsage{"Dash", {"run", ".", "-"}, dash},
                    BadUsage{"UnknownOption", {"run", ".", "--bogus=1"}, unknownOption},
                    BadUsage{"MisspeltOption", {"run", ".", "--wehn", "a=1"}, misspeltOption},
                    BadUsage{"MisspeltOptionWhoseValueIsTakenForTheDirectory", {"run", "--wehn"}, misspeltOption},
                    BadUsage{"OptionBeforeTheCommand", {"--bogus", "run", "."}, optionOfTheProgram},
                    BadUsage{"OptionWithoutCommand", {"--bogus"}, optionOfTheProgram},
                    BadUsage{"NoValue", {"run", ".", "--when"}, noValue},
                    BadUsage{"UnknownLevel", {"run", ".", "--log-level", "loud"}, unknownLevel},
                    BadUsage{"MisspeltLevel", {"run", ".", "--log-level", "problem"}, misspeltLevel}),
    nameOf);

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

TEST(CommandLine, GivenTimeLimitThatIsNoPositiveNumber_ThenStatusTwo)
{
    for (const char* const value : {"0", "-1", "0.0", "1s", " 1", "nan", "inf", "1e99", "x"}) {
        const ProgramResult result = runHost({"run", ".", std::string{"--timeout="} + value});

        EXPECT_EQ(result.status, 2) << value;
        EXPECT_EQ(result.err, noSeconds(value));
    }
}

TEST(CommandLine, GivenTimeLimit_ThenItIsAccepted)
{
    const TemporaryDirectory empty;

    for (const char* const value : {"30", "30.5", "1e2", "31536000"}) {
        EXPECT_EQ(runHost({"run", empty.path(), "--timeout", value}).status, 0) << value;
    }
}

TEST(CommandLine, GivenVersion_ThenItGoesToStandardOutput)
{
    const ProgramResult result = runHost({"--version"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "ostrel-host " OSTREL_TEST_VERSION "\n");
    EXPECT_EQ(result.err, "");
}

} // namespace ostrel::test
