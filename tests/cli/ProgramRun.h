#pragma once

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
    fullDisk,   ///< /dev/full
    closed,     ///< the descriptor is closed
    closedPipe, ///< a pipe that nobody reads
};

/// Runs a program to its end. Standard input holds `input`.
ProgramResult runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const std::string& input = {}, Output output = Output::captured);

/// Runs the built ostrel-host.
ProgramResult runHost(const std::vector<std::string>& arguments, Output output = Output::captured);

/// The text with every occurrence of the path replaced by "<bundles>".
std::string withoutPath(std::string text, const std::filesystem::path& path);

} // namespace ostrel::test
