#pragma once

#include "bundle_checker/Finding.h"
#include "bundle_reader/manifest/Json.h"

#include <string_view>

namespace ostrel::bundle_checker {

/// Says what is wrong with the keys that the frameworks look at: name, version and activator.
///
/// @param name  that the bundle gets: the call's symbolic name
void describeBundleKeys(const bundle_reader::JsonValue& root, std::string_view name, Findings& findings);

} // namespace ostrel::bundle_checker
