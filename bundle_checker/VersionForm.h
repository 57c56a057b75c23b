#pragma once

#include <string>
#include <string_view>

namespace ostrel::bundle_checker {

/// What is to be said of the text of a version.
struct VersionForm {
    bool isWrong = false; ///< the framework refuses it, or takes a negative number for a very large one
    std::string fault;    ///< what the framework makes of it; empty for a good one
};

/// A good version is one to three numbers with dots, and behind three of them perhaps a qualifier. What the frameworks
/// take besides, they take for another version than the text says.
VersionForm versionForm(std::string_view text);

} // namespace ostrel::bundle_checker
