#pragma once

#include "bundle_checker/Finding.h"
#include "bundle_reader/manifest/Json.h"

namespace ostrel::bundle_checker {

/// Warns of what a start by directory and conditions does with the container's keys, where that is not what they seem
/// to say: "zq.component.name" and "zq.ostrelFilters".
void describeComponentKeys(const bundle_reader::JsonValue& root, Findings& findings);

} // namespace ostrel::bundle_checker
