#pragma once

#include "bundle_checker/Finding.h"

#include <string>
#include <string_view>
#include <vector>

namespace ostrel::bundle_checker {

/// Says where the manifest of a bundle and the activators that its library exports do not fit together.
///
/// @param text        of the manifest; one that cannot be read gives no finding
/// @param name        of the bundle
/// @param library     as it is to be named
/// @param activators  the bundles for which the library exports an activator
/// @throws std::bad_alloc and nothing else
/// @locks  none
Findings checkActivator(std::string_view text, std::string_view name, std::string_view library,
                        const std::vector<std::string>& activators);

/// What the name of the function that makes a bundle's activator begins with; the bundle's name follows.
inline constexpr std::string_view activatorSymbol = "_us_create_activator_";

} // namespace ostrel::bundle_checker
