#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ostrel::bundle_checker {

enum class Severity {
    error,   ///< the framework refuses the bundle, or does what nobody can have meant
    warning, ///< the bundle runs, but something in its manifest has no effect, or another one than it seems
};

/// What is to be said of one place in a manifest.
struct Finding {
    Severity severity = Severity::error;
    std::size_t offset = 0; ///< in the text of the manifest, in bytes
    std::string text;       ///< one line without control characters
};

using Findings = std::vector<Finding>;

inline void addError(Findings& findings, std::size_t offset, std::string text)
{
    findings.push_back({Severity::error, offset, std::move(text)});
}

inline void addWarning(Findings& findings, std::size_t offset, std::string text)
{
    findings.push_back({Severity::warning, offset, std::move(text)});
}

} // namespace ostrel::bundle_checker
