#pragma once

#include "bundle_reader/file/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrel::bundle_reader {

/// A manifest of more bytes counts as damage, as do all manifests of one file together above four times as many.
inline constexpr std::size_t manifestLimit = std::size_t{16} << 20;

/// One top folder of the archive, that is one bundle; so is a folder that holds nothing.
struct Folder {
    std::string name;                    ///< bytes as in the archive; the bundle's symbolic name
    std::optional<std::string> manifest; ///< bytes of `<name>/manifest.json` (in any case); nothing when there is none
};

/// What an archive holds, or why it cannot be read.
struct Folders {
    std::string damage;          ///< "" when it can be read
    bool rootManifest = false;   ///< there is a manifest.json outside of any folder
    bool moreFiles = false;      ///< the folders hold other files than their manifests
    std::vector<Folder> folders; ///< in ascending byte order of name
};

/// Reads the archive that lies from `begin` to `end` in the source: its directory, and the manifests.
///
/// @throws std::bad_alloc, and what the source throws
/// @cost   what the directory and the manifests are long; other entries are not read
Folders readFolders(const ByteSource& source, std::uint64_t begin, std::uint64_t end);

} // namespace ostrel::bundle_reader
