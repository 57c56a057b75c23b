#pragma once

#include <CLI/CLI.hpp>

#include <cstddef>
#include <string>

namespace ostrel::host {

/// Lays out --help for a terminal of some width.
class Help final : public CLI::Formatter {
public:
    explicit Help(std::size_t width);

    std::string make_description(const CLI::App* app) const override;
    std::string make_option(const CLI::Option* option, bool isPositional) const override;
    std::string make_subcommand(const CLI::App* command) const override;
    std::string make_footer(const CLI::App* app) const override;

private:
    std::string row(const std::string& name, const std::string& text) const;

    std::size_t m_width;
    std::size_t m_column;
};

} // namespace ostrel::host
