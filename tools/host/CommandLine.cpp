#include "CommandLine.h"

#include "commands/Explain.h"
#include "commands/Inspect.h"
#include "commands/Plan.h"
#include "commands/Run.h"
#include "frame/Help.h"
#include "frame/Problem.h"
#include "frame/TerminalWidth.h"
#include "frame/UsageError.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

namespace ostrel::host {

namespace {

/// The command table: a command is a file in commands/ and a line here.
std::vector<Command> addCommands(CLI::App& program)
{
    return {addRun(program), addPlan(program), addExplain(program), addInspect(program)};
}

ExitStatus parseAndRun(int argc, const char* const* argv, Streams& io)
{
    CLI::App program{"Hosts plug-in bundles from the command line.", "ostrel-host"};
    program.set_version_flag("--version", "ostrel-host " OSTREL_HOST_VERSION, "Print the version and exit");
    program.footer(describeExitStatuses());
    program.require_subcommand(1);

    const auto help = std::make_shared<Help>(terminalWidth());
    program.formatter(help);
    const std::vector<Command> commands = addCommands(program);
    for (const Command& command : commands) {
        command.options->formatter(help);
        command.options->footer(describeExitStatuses());
    }

    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            program.exit(error, io.out, io.err); // help or version were asked for
            return ExitStatus::ok;
        }
        throw usageError(program, {argv + 1, argv + argc}, error);
    }
    for (const Command& command : commands) {
        if (command.options->parsed()) {
            return command.run(io);
        }
    }
    return ExitStatus::internal; // not reached: parse() wants one of the commands
}

void checkResult(ResultStream& out)
{
    if (out.flush()) {
        return;
    }
    switch (out.error()) {
    case EPIPE:
        throw Problem{ExitStatus::output,
                      {"the result cannot be written",
                       "standard output",
                       {"its reader is gone"},
                       "let the reader read to the end, or write to a file"}};
    case ENOSPC:
        throw Problem{ExitStatus::output,
                      {"the result cannot be written",
                       "standard output",
                       {"the disk is full"},
                       "make room, or write to another place"}};
    default:
        throw Problem{ExitStatus::output,
                      {"the result cannot be written",
                       "standard output",
                       {std::generic_category().message(out.error())},
                       "check where standard output goes"}};
    }
}

} // namespace

ExitStatus runCommandLine(int argc, const char* const* argv, Streams& io)
{
    try {
        const ExitStatus status = parseAndRun(argc, argv, io);
        checkResult(io.out);
        return status;
    } catch (const Problem& problem) {
        problem.print(io.err);
        return problem.status();
    } catch (const std::exception& error) {
        Problem{ExitStatus::internal, {"unforeseen error", "", {error.what()}, "report this as a bug of ostrel-host"}}
            .print(io.err);
        return ExitStatus::internal;
    }
}

} // namespace ostrel::host
