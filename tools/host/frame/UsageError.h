#pragma once

#include "frame/Problem.h"

#include <CLI/App.hpp>

#include <string>
#include <vector>

namespace ostrel::host {

/// What is wrong with the command line that `program` refused, with the command or the option that was meant.
Problem usageError(const CLI::App& program, const std::vector<std::string>& arguments, const CLI::ParseError& error);

} // namespace ostrel::host
