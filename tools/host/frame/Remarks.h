#pragma once

#include "frame/LogLevel.h"

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::host {

/// What the user should know although nothing failed, each one line on standard error. With the level `none` it is
/// silent.
class Remarks {
public:
    Remarks(std::ostream& stream, LogLevel level) : m_stream(stream), m_level(level) {}

    /// "ostrel-host: warning: TEXT"; the text is escaped.
    void warning(std::string_view text) const { write("warning", text); }

    /// One for each.
    void warnings(const std::vector<std::string>& texts) const
    {
        for (const std::string& text : texts) {
            warning(text);
        }
    }

    /// "ostrel-host: note: TEXT"; the text is escaped.
    void note(std::string_view text) const { write("note", text); }

private:
    void write(const char* kind, std::string_view text) const;

    std::ostream& m_stream;
    LogLevel m_level;
};

} // namespace ostrel::host
