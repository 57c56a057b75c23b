#pragma once

#include "bundle_checker/Finding.h"
#include "bundle_reader/manifest/Json.h"

namespace ostrel::bundle_checker {

/// Warns of every value that the frameworks drop without a word: null, integers that do not fit 32 bits, and each
/// further value of a key.
void describeDropped(const bundle_reader::JsonValue& root, Findings& findings);

} // namespace ostrel::bundle_checker
