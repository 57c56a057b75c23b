#pragma once

namespace ostrel::host {

/// What the program's exit status says. Scripts rely on the numbers; describeExitStatuses() tells users.
enum class ExitStatus {
    ok = 0,
    internal = 1,   ///< an error that the program did not foresee
    usage = 2,      ///< the command line cannot be understood
    directory = 3,  ///< the bundle directory cannot be read
    bundle = 4,     ///< a bundle cannot be installed, fails to start or to stop, or one of its services fails
    framework = 5,  ///< the plug-in framework does not start or stop
    output = 6,     ///< standard output cannot be written
    answerIsNo = 7, ///< nothing failed, and what was asked is not so
};

/// The end of every --help text.
constexpr const char* describeExitStatuses()
{
    return "Exit status:\n"
           "  0  done; also when the conditions admit no bundle\n"
           "  1  unforeseen error\n"
           "  2  the command line cannot be understood\n"
           "  3  the bundle directory does not exist, is no directory or cannot be read\n"
           "  4  a bundle cannot be installed, started, loaded from, reported or stopped\n"
           "  5  the plug-in framework does not start or stop\n"
           "  6  standard output cannot be written\n"
           "  7  done, and the answer is no";
}

} // namespace ostrel::host
