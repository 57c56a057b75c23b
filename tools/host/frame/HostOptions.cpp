#include "frame/HostOptions.h"

#include "frame/Problem.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <inspection/Text.h>
#include <string_view>
#include <utility>

namespace ostrel::host {

namespace {

constexpr std::array levels{std::pair{"none", LogLevel::none}, std::pair{"problems", LogLevel::problems},
                            std::pair{"decisions", LogLevel::decisions}, std::pair{"all", LogLevel::all}};

/// @throws Problem (usage) if there is no such level
LogLevel levelNamed(const std::string& text)
{
    std::vector<std::string_view> names;
    std::string listed;
    for (const auto& level : levels) {
        if (text == level.first) {
            return level.second;
        }
        names.emplace_back(level.first);
        listed += (listed.empty() ? "" : ", ") + std::string{level.first};
    }
    const std::string_view meant = inspection::nearest(text, names);
    throw Problem{ExitStatus::usage,
                  {"unknown level " + quoted(text) + " of --log-level",
                   "",
                   {"the levels are: " + listed},
                   meant.empty() ? "give one of them" : "did you mean " + std::string{meant} + "?"}};
}

/// @throws Problem (usage) if it is no positive number
std::chrono::duration<double> secondsIn(const std::string& text)
{
    double seconds = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, seconds);
    // A year is longer than anybody waits, and no clock overflows with it.
    constexpr double year = 365.0 * 24 * 60 * 60;
    if (read.ec != std::errc{} || read.ptr != end || !(seconds > 0) || seconds > year) {
        throw Problem{ExitStatus::usage,
                      {"--timeout " + quoted(text) + " cannot be understood",
                       "",
                       {"it is no number of seconds above zero"},
                       "write it as --timeout 30, or as --timeout 0.5"}};
    }
    return std::chrono::duration<double>{seconds};
}

} // namespace

void addDirectory(CLI::App& command, HostOptions& options)
{
    command.add_option("DIR", options.directory, "Directory with the bundle files")->required()->type_name("");
}

void addConditions(CLI::App& command, HostOptions& options)
{
    command
        .add_option("--when", options.when,
                    "NAME=VALUE: a bundle or service that declares NAME is admitted only with this VALUE. "
                    "May be repeated")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
    command
        .add_option("--require", options.require,
                    "NAME=VALUE: as --when, and what declares none of the required NAMEs is refused. May be repeated")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
}

void addLogLevel(CLI::App& command, HostOptions& options)
{
    command
        .add_option_function<std::string>(
            "--log-level", [&options](const std::string& text) { options.logLevel = levelNamed(text); },
            "What is told on standard error: none; problems (malformed filters, failures and remarks); decisions (also "
            "what was admitted or refused, and why); all (also loaded services)")
        ->type_name("LEVEL")
        ->default_str("problems");
}

void addTimeout(CLI::App& command, HostOptions& options)
{
    command
        .add_option_function<std::string>(
            "--timeout", [&options](const std::string& text) { options.timeout = secondsIn(text); },
            "How long the start or the stop of one bundle may take, and each other step in which code of bundles runs; "
            "fractions are allowed. Without it there is no limit")
        ->type_name("SECONDS");
}

void addKeepGoing(CLI::App& command, bool& keepGoing)
{
    command.add_flag("--keep-going", keepGoing,
                     "Leave out what fails, and start the rest; without it nothing is started when one file or bundle "
                     "cannot be used");
}

void addJson(CLI::App& command, bool& json)
{
    command.add_flag("--json", json, "Print one JSON object, for programs, instead of text");
}

} // namespace ostrel::host
