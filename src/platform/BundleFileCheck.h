#pragma once

#include "bundle_reader/BundleFile.h"

#include <optional>
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

/// What a file holds.
///
/// @throws std::runtime_error that names `path` when it cannot be read
/// @locks  none
/// @cost   reads what the file's kind, needs and manifests are known by; runs nothing of it
bundle_reader::Contents readBundleFile(const std::string& path);

/// The same, or none where the path leads to no file that can be read.
std::optional<bundle_reader::Contents> readIfFile(const std::string& path);

/// Which bundles a file holds; none for a listed file that is to be skipped.
///
/// @throws std::runtime_error that names `path` when the file is damaged, truncated, pretends to be a bundle, is one
///         for the other framework or has a manifest that is none
std::vector<BundleIdentity> bundlesIn(const std::string& path, const bundle_reader::Contents& contents, FileRole role);

} // namespace ostrel::platform
