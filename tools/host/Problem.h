#pragma once

#include "ExitStatus.h"

#include <ostream>
#include <stdexcept>
#include <string>

namespace ostrel::host {

/// An error for the user: what went wrong, where, why, and what to do about it; and the exit status that tells scripts.
class Problem final : public std::runtime_error {
public:
    struct Text {
        std::string what;
        std::string where;
        std::string why;
        std::string remedy;
    };

    Problem(ExitStatus status, Text text);

    ExitStatus status() const { return m_status; }

    /// Writes the problem in four lines.
    void print(std::ostream& stream) const;

private:
    ExitStatus m_status;
    Text m_text;
};

/// The bytes in quotes, fit for a terminal: control characters and bytes that are not UTF-8 become "\xNN".
std::string quoted(const std::string& bytes);

} // namespace ostrel::host
