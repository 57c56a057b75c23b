#pragma once

#include "frame/LogLevel.h"

#include <boost/log/sinks/sink.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace ostrel::host {

/// Shows the library's diagnostic records to the user while it lives.
///
/// A Boost.Log sink of its own writes one line per record, "<kind>: <message>" with the message escaped, and sees the
/// records of the library's channel alone. The level becomes the library's mask of enabled severities, so that what is
/// not wanted is not even composed.
class DiagnosticOutput {
public:
    DiagnosticOutput(LogLevel level, std::ostream& stream);
    DiagnosticOutput(const DiagnosticOutput&) = delete;
    DiagnosticOutput& operator=(const DiagnosticOutput&) = delete;
    ~DiagnosticOutput();

    /// From here on notices are problems too: while bundles are loaded they tell of loaded services, while they are
    /// unloaded they tell of bundles that did not stop.
    void beginUnload();

    /// The problems recorded since beginUnload(), whatever the level.
    const std::vector<std::string>& unloadProblems() const { return m_unloadProblems; }

private:
    class Backend;

    LogLevel m_level;
    bool m_unloading = false;
    std::vector<std::string> m_unloadProblems;
    boost::shared_ptr<boost::log::sinks::sink> m_sink;
};

} // namespace ostrel::host
