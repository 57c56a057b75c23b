#include "CommandLine.h"

#include "Problem.h"
#include "commands/Run.h"

#include <CLI/CLI.hpp>

#include <vector>

namespace ostrel::host {

namespace {

/// The subcommand that the user was busy with, for a hint at its own help.
std::string helpOf(const CLI::App& program)
{
    const auto chosen = program.get_subcommands();
    return "see 'ostrel-host " + (chosen.empty() ? std::string{} : chosen.front()->get_name() + " ") + "--help'";
}

/// Help and version were asked for and go to `io.out`; anything else is a usage error.
ExitStatus answer(const CLI::App& program, const CLI::ParseError& error, Streams& io)
{
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
        program.exit(error, io.out, io.err);
        return ExitStatus::ok;
    }
    throw Problem{ExitStatus::usage,
                  {"cannot understand the command line", "the arguments", error.what(), helpOf(program)}};
}

ExitStatus parseAndRun(int argc, const char* const* argv, Streams& io)
{
    CLI::App program{"Hosts plug-in bundles from the command line.", "ostrel-host"};
    program.set_version_flag("--version", "ostrel-host " OSTREL_HOST_VERSION, "Print the version and exit");
    program.footer(describeExitStatuses());
    program.require_subcommand(1);

    const std::vector<Command> commands{addRun(program)};

    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return answer(program, error, io);
    }
    for (const Command& command : commands) {
        if (command.options->parsed()) {
            return command.run(io);
        }
    }
    return ExitStatus::internal; // not reached: parse() wants one of the commands
}

} // namespace

ExitStatus runCommandLine(int argc, const char* const* argv, Streams& io)
{
    try {
        const ExitStatus status = parseAndRun(argc, argv, io);
        if (!io.out.flush()) {
            throw Problem{ExitStatus::output,
                          {"cannot write the result", "standard output", "the reader is gone, or the disk is full",
                           "check where the output goes, then run the command again"}};
        }
        return status;
    } catch (const Problem& problem) {
        problem.print(io.err);
        return problem.status();
    } catch (const std::exception& error) {
        Problem{ExitStatus::internal,
                {"unforeseen error", "the program itself", error.what(), "report this as a bug of ostrel-host"}}
            .print(io.err);
        return ExitStatus::internal;
    }
}

} // namespace ostrel::host
