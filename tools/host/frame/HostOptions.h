#pragma once

#include "frame/LogLevel.h"

#include <CLI/App.hpp>

#include <chrono>
#include <container/MicroServicesContainer.h>
#include <optional>
#include <string>
#include <vector>

namespace ostrel::host {

/// What the commands are told on the command line, as it was written there.
struct HostOptions {
    std::string directory;
    std::vector<std::string> when;
    std::vector<std::string> require;
    LogLevel logLevel = LogLevel::problems;
    std::optional<std::chrono::duration<double>> timeout;
};

/// Each adds one argument to a command; `options` must live until the command line is read.
void addDirectory(CLI::App& command, HostOptions& options);
void addConditions(CLI::App& command, HostOptions& options);
void addLogLevel(CLI::App& command, HostOptions& options);
void addTimeout(CLI::App& command, HostOptions& options);
void addKeepGoing(CLI::App& command, bool& keepGoing);
void addJson(CLI::App& command, bool& json);

} // namespace ostrel::host
