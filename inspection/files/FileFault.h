#pragma once

#include "bundle_reader/BundleFile.h"
#include "inspection/Finding.h"

#include <optional>
#include <string>
#include <system_error>

namespace ostrel::inspection {

/// What keeps a file from being installed, seen in the file alone; none when nothing is found.
///
/// @param path  as it is shown
std::optional<Finding> faultOf(const std::string& path, const bundle_reader::Contents& contents);

/// The same for a file that is to hold a bundle, but cannot be read.
Finding unreadable(const std::string& path, const std::error_code& error);

/// Why a file holds no bundle, as what is said of it; "" when it holds one.
std::string whyNoBundle(const bundle_reader::Contents& contents);

} // namespace ostrel::inspection
