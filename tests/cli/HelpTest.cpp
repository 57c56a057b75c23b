#include "cli/ProgramRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace ostrel::test {

using testing::HasSubstr;
using testing::Not;

namespace {

const char* const narrowHelp = R"(Start the bundles of a directory that the conditions admit,
load their services, say what came of it, and unload.
Usage: ostrel-host run [OPTIONS] DIR

Positionals:
  DIR REQUIRED      Directory with the bundle files

Options:
  -h,--help         Print this help message and exit
  --when NAME=VALUE ...
                    NAME=VALUE: a bundle or service that
                    declares NAME is admitted only with this
                    VALUE. May be repeated
  --require NAME=VALUE ...
                    NAME=VALUE: as --when, and what declares
                    none of the required NAMEs is refused.
                    May be repeated
  --plan FILE       Do exactly what 'plan -o FILE' wrote
                    down, with its conditions; refused when
                    a bundle has changed since
  --keep-going      Leave out what fails, and start the
                    rest; without it nothing is started when
                    one file or bundle cannot be used
  --report          Print the container's report of bundles
                    and services instead of the summary
  --console         Print the console reports instead: a
                    table of all installed bundles, then the
                    names of the loaded services and the
                    services of all installed bundles with
                    their users
  --log-level LEVEL=problems
                    What is told on standard error: none;
                    problems (malformed filters, failures
                    and remarks); decisions (also what was
                    admitted or refused, and why); all (also
                    loaded services)
  --timeout SECONDS
                    How long the start or the stop of one
                    bundle may take, and each other step in
                    which code of bundles runs; fractions
                    are allowed. Without it there is no
                    limit

Exit status:
  0  done; also when the conditions admit no bundle
  1  unforeseen error
  2  the command line cannot be understood
  3  the bundle directory does not exist, is no directory or
     cannot be read
  4  a bundle cannot be installed, started, loaded from,
     reported or stopped
  5  the plug-in framework does not start or stop
  6  standard output cannot be written
  7  done, and the answer is no
)";

const char* const programHelp = R"(Hosts plug-in bundles from the command line.
Usage: ostrel-host [OPTIONS] SUBCOMMAND

Options:
  -h,--help               Print this help message and exit
  --version               Print the version and exit

Subcommands:
  run                     Start the bundles of a directory that the conditions
                          admit, load their services, say what came of it, and
                          unload.
  plan                    Say what 'run' with the same options will do: which
                          bundles start, which are refused, which fail, and why.
                          Runs no code of a bundle.
  explain                 Say of each bundle why the conditions admit or refuse
                          it, and which smallest change of the conditions would
                          admit what is refused. Runs no code of a bundle,
                          unless services are asked for.
  inspect                 Say what a file is and holds, or each file of a
                          directory, and which conditions are declared. Runs no
                          code of a bundle.

Exit status:
  0  done; also when the conditions admit no bundle
  1  unforeseen error
  2  the command line cannot be understood
  3  the bundle directory does not exist, is no directory or cannot be read
  4  a bundle cannot be installed, started, loaded from, reported or stopped
  5  the plug-in framework does not start or stop
  6  standard output cannot be written
  7  done, and the answer is no
)";

Surroundings terminalOf(unsigned short columns)
{
    Surroundings surroundings;
    surroundings.output = Output::terminal;
    surroundings.columns = columns;
    return surroundings;
}

Surroundings withColumns(const std::string& value)
{
    Surroundings surroundings;
    surroundings.environment = {"COLUMNS=" + value};
    return surroundings;
}

std::size_t longestLine(const std::string& text)
{
    std::size_t longest = 0;
    std::istringstream lines{text};
    for (std::string line; std::getline(lines, line);) {
        longest = std::max(longest, line.size());
    }
    return longest;
}

} // namespace

TEST(HelpText, GivenProgram_ThenItListsTheCommandsAndEveryExitStatus)
{
    const ProgramResult result = runHost({"--help"}, withColumns("80"));

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, programHelp);
}

TEST(HelpText, GivenTerminalOfSixtyColumns_ThenEveryTextHangsInItsColumn)
{
    const ProgramResult result = runHost({"run", "--help"}, terminalOf(60));

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, narrowHelp);
}

TEST(HelpText, GivenTerminalAndColumns_ThenTheTerminalCounts)
{
    Surroundings surroundings = terminalOf(60);
    surroundings.environment = {"COLUMNS=100"};

    EXPECT_EQ(runHost({"run", "--help"}, surroundings).out, narrowHelp);
}

TEST(HelpText, GivenNoTerminal_ThenColumnsCounts)
{
    EXPECT_EQ(runHost({"run", "--help"}, withColumns("60")).out, narrowHelp);
}

TEST(HelpText, GivenTerminalThatDoesNotKnowItsWidth_ThenColumnsCounts)
{
    Surroundings surroundings = terminalOf(0);
    surroundings.environment = {"COLUMNS=60"};

    EXPECT_EQ(runHost({"run", "--help"}, surroundings).out, narrowHelp);
}

TEST(HelpText, GivenColumnsThatAreNoNumber_ThenLinesHaveEighty)
{
    const std::string eighty = runHost({"run", "--help"}, withColumns("80")).out;

    EXPECT_GT(longestLine(eighty), 70U);
    EXPECT_LE(longestLine(eighty), 80U);
    for (const char* const value : {"", "wide", "60x", "-60", " 60", "99999999999999999999"}) {
        EXPECT_EQ(runHost({"run", "--help"}, withColumns(value)).out, eighty) << value;
    }
}

TEST(HelpText, GivenFewColumns_ThenFortyAreTaken)
{
    EXPECT_EQ(runHost({"run", "--help"}, terminalOf(1)).out, runHost({"run", "--help"}, terminalOf(40)).out);
}

TEST(HelpText, GivenRun_ThenItSpeaksNoMasks)
{
    EXPECT_THAT(runHost({"run", "--help"}).out, Not(HasSubstr("0x")));
}

} // namespace ostrel::test
