#pragma once

#include "bundle_reader/BundleFile.h"

#include <string_view>

namespace ostrel::bundle_reader {

/// Whether a file holds bundles, and why not.
enum class Holding {
    bundles,
    neitherLibraryNorArchive,
    noArchive,    ///< a shared object without one
    noManifest,   ///< an archive without any
    rootManifest, ///< an archive whose only manifest lies in no folder
};

/// @param contents  neither truncated nor damaged: of such a file this says nothing
Holding holdingOf(const Contents& contents);

/// Whether a file that lies in a directory of bundles may lie beside them. What is truncated or damaged may not, nor
/// what is called like a library and is none. A shared object without an archive may, as those that bundles need.
///
/// @param name  of the file; a path will do
bool isPassedOver(std::string_view name, const Contents& contents);

} // namespace ostrel::bundle_reader
