#pragma once

#include <string>
#include <text/Services.h>
#include <utility>

/// Puts typographic quotation marks in place of straight ones. A mark opens where a text begins, after white space and
/// after an opening bracket.
class Quotes final : public text::Step {
public:
    Quotes(std::string opening, std::string closing) : m_opening(std::move(opening)), m_closing(std::move(closing)) {}

    std::string apply(const std::string& text) const override
    {
        std::string result;
        char before = ' ';
        for (const char c : text) {
            if (c == '"') {
                result += std::string{" \t\n([{"}.find(before) != std::string::npos ? m_opening : m_closing;
            } else {
                result += c;
            }
            before = c;
        }
        return result;
    }

private:
    std::string m_opening;
    std::string m_closing;
};
