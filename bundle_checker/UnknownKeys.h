#pragma once

#include "bundle_checker/Finding.h"
#include "bundle_reader/manifest/Json.h"

namespace ostrel::bundle_checker {

/// Warns of keys that nobody looks at where all keys are known: those that begin with "bundle.", and those of the
/// objects "zq" and "zq.component". What else stands in a manifest is its author's business.
void describeUnknownKeys(const bundle_reader::JsonValue& root, Findings& findings);

} // namespace ostrel::bundle_checker
