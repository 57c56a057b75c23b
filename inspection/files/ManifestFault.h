#pragma once

#include "bundle_reader/zip/Folders.h"
#include "inspection/Finding.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::inspection {

/// Why frameworks refuse the bundle of a folder; none when they do not.
///
/// @param path  of the file, as it is shown
std::optional<Finding> manifestFault(const std::string& path, const bundle_reader::Folder& folder);

/// What the check at build time warns of in a manifest that frameworks take: each a sentence with its place.
std::vector<std::string> manifestHints(std::string_view manifest, const std::string& symbolicName);

} // namespace ostrel::inspection
