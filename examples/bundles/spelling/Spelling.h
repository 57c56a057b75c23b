#pragma once

#include <string>
#include <text/Services.h>
#include <unordered_map>

/// Corrects words that are often misspelt. A capital first letter stays one.
class Spelling final : public text::Step {
public:
    /// Builds the table of corrections.
    Spelling();

    std::string apply(const std::string& text) const override;

private:
    std::string corrected(const std::string& word) const;

    std::unordered_map<std::string, std::string> m_corrections; ///< in lower case
};
