#pragma once

#include "frame/ExitStatus.h"
#include "frame/StandardStreams.h"

#include <CLI/App.hpp>

#include <functional>
#include <ostream>

namespace ostrel::host {

/// Results go to `out`, remarks to `err`; the two are never mixed.
struct Streams {
    ResultStream& out;
    std::ostream& err;
};

/// A subcommand: its place on the command line and what it does once its options are read.
struct Command {
    CLI::App* options;
    /// @throws Problem for everything that the user can do something about
    std::function<ExitStatus(Streams&)> run;
};

} // namespace ostrel::host
