#pragma once

namespace ostrel::host {

/// Which of the library's records and the program's remarks the user wants to see.
enum class LogLevel {
    none,
    problems,  ///< malformed filters, failures and remarks
    decisions, ///< those, and what was admitted or refused and why
    all,
};

} // namespace ostrel::host
