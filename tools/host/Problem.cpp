#include "Problem.h"

#include <platform/Utf16Path.h>

#include <array>
#include <cstdio>
#include <utility>

namespace ostrel::host {

namespace {

bool isUtf8(const std::string& bytes)
{
    try {
        ostrel::platform::toUtf16(bytes);
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

/// Messages of others may have several lines; those after the first are aligned with it.
std::string aligned(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        result += c;
        if (c == '\n') {
            result += "         ";
        }
    }
    return result;
}

} // namespace

Problem::Problem(ExitStatus status, Text text)
    : std::runtime_error(text.what), m_status(status), m_text(std::move(text))
{
}

void Problem::print(std::ostream& stream) const
{
    stream << "ostrel-host: " << m_text.what << "\n  where: " << aligned(m_text.where)
           << "\n  why:   " << aligned(m_text.why) << "\n  do:    " << aligned(m_text.remedy) << '\n';
}

std::string quoted(const std::string& bytes)
{
    const bool plain = isUtf8(bytes);
    std::string result = "'";
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7f || (byte >= 0x80 && !plain)) {
            std::array<char, 5> escaped{};
            std::snprintf(escaped.data(), escaped.size(), "\\x%02x", static_cast<unsigned int>(byte));
            result += escaped.data();
        } else {
            result += c;
        }
    }
    return result + "'";
}

} // namespace ostrel::host
