#pragma once

#include "bundle_checker/Finding.h"
#include "bundle_reader/manifest/Json.h"

#include <string_view>

namespace ostrel::bundle_checker {

/// Says why a text is no manifest, in the words of somebody who wrote it, at the place that has to be changed.
///
/// @param fault  of exactly this text, which was read strictly
Finding describeFault(std::string_view text, const bundle_reader::JsonFault& fault);

} // namespace ostrel::bundle_checker
