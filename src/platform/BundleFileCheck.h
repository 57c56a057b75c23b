#pragma once

#include <string>
#include <vector>

namespace ostrel::platform {

enum class FileRole {
    named,  ///< the caller asked for this very file: it must hold a bundle
    listed, ///< it lies in the caller's directory: a file that does not pretend to be a bundle may lie beside them
};

/// One bundle of a file, by what tells it from others.
struct BundleIdentity {
    std::string symbolicName;
    std::string version; ///< as framework versions print
};

/// Looks into a file and tells which bundles it holds; none for a listed file that is to be skipped.
///
/// @throws std::runtime_error that names `path` when the file is damaged, truncated, pretends to be a bundle, is one
/// for
///         the other framework or has a manifest that is none
/// @locks  none
/// @cost   reads the file; runs nothing of it
std::vector<BundleIdentity> bundlesIn(const std::string& path, FileRole role);

} // namespace ostrel::platform
