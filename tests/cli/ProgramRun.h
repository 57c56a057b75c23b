#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace ostrel::test {

/// What a program left behind.
struct ProgramResult {
    int status; ///< exit status; 128 + N if signal N ended it
    std::string out;
    std::string err;
};

/// Where a program's standard output goes.
enum class Output {
    captured,
    terminal,   ///< a pseudo-terminal, which changes nothing of what it gets
    fullDisk,   ///< /dev/full
    closed,     ///< the descriptor is closed
    closedPipe, ///< a pipe that nobody reads
};

/// How a program is run.
struct Surroundings {
    std::string input;                    ///< what standard input holds
    Output output = Output::captured;     ///< where standard output goes
    unsigned short columns = 80;          ///< of the terminal
    std::vector<std::string> environment; ///< "NAME=VALUE", beside what this process has
};

/// Runs a program to its end. One that takes longer than a minute is ended by SIGKILL.
ProgramResult runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const Surroundings& surroundings);
ProgramResult runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const std::string& input = {}, Output output = Output::captured);

/// Runs the built ostrel-host.
ProgramResult runHost(const std::vector<std::string>& arguments, Output output = Output::captured);
ProgramResult runHost(const std::vector<std::string>& arguments, const Surroundings& surroundings);

/// The text with every occurrence of the path replaced by "<bundles>".
std::string withoutPath(std::string text, const std::filesystem::path& path);

} // namespace ostrel::test
