#include "frame/Help.h"

#include "frame/Wrap.h"

#include <algorithm>

namespace ostrel::host {

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
