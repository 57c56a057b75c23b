#include "Help.h"

#include <algorithm>
#include <sstream>

namespace ostrel::host {

namespace {

std::size_t hangingIndentOf(const std::string& line)
{
    const std::size_t begin = std::min(line.find_first_not_of(' '), line.size());
    const std::size_t gap = line.find("  ", begin);
    return gap == std::string::npos ? begin : std::min(line.find_first_not_of(' ', gap), line.size());
}

std::string wrappedLine(const std::string& line, std::size_t width)
{
    const std::size_t indent = hangingIndentOf(line);
    std::string done;
    std::string rest = line;
    while (rest.size() > width) {
        // A word that is longer than the line stays whole.
        std::size_t end = rest.rfind(' ', width);
        if (end == std::string::npos || end <= indent) {
            end = rest.find(' ', std::max(indent, width));
        }
        if (end == std::string::npos) {
            break;
        }
        done += rest.substr(0, end) + '\n';
        rest = std::string(indent, ' ') + rest.substr(end + 1);
    }
    return done + rest + '\n';
}

} // namespace

std::string wrapped(const std::string& text, std::size_t width)
{
    std::istringstream lines{text};
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        result += wrappedLine(line, width);
    }
    return result;
}

Help::Help(std::size_t width) : m_width(width), m_column(std::min<std::size_t>(30, width / 3)) {}

std::string Help::make_description(const CLI::App* app) const
{
    return wrapped(app->get_description(), m_width);
}

std::string Help::make_option(const CLI::Option* option, bool isPositional) const
{
    return row(make_option_name(option, isPositional) + make_option_opts(option), option->get_description());
}

std::string Help::make_subcommand(const CLI::App* command) const
{
    return row(command->get_name(), command->get_description());
}

std::string Help::make_footer(const CLI::App* app) const
{
    return wrapped(app->get_footer(), m_width);
}

/// A name that leaves no gap before the column of the texts has a line of its own.
std::string Help::row(const std::string& name, const std::string& text) const
{
    const std::string head = "  " + name;
    // Wrapped without the name, whose own gaps must not tell where the next lines begin.
    std::string lines = wrapped(std::string(m_column, ' ') + text, m_width);
    return head.size() + 2 > m_column ? head + "\n" + lines : lines.replace(0, head.size(), head);
}

} // namespace ostrel::host
