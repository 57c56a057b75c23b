#pragma once

#include "bundle_checker/Finding.h"

#include <string_view>

namespace ostrel::bundle_checker {

/// Everything that is to be said of a manifest before its bundle is made.
///
/// Errors are what the frameworks refuse, and a name or version that cannot be meant. Warnings are entries that the
/// frameworks and the container take for something else than they seem, or do not look at.
///
/// @param text  of the manifest; any bytes will do
/// @param name  that the bundle gets: the call's symbolic name
/// @return in the order of the text
/// @throws std::bad_alloc and nothing else
/// @locks  none
/// @cost   linear in the size of the text and of the findings
Findings checkManifest(std::string_view text, std::string_view name);

} // namespace ostrel::bundle_checker
