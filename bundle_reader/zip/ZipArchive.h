#pragma once

#include "bundle_reader/BundleFile.h"

#include <string_view>

namespace ostrel::bundle_reader {

/// Reads the folders and manifests of the archive that `bytes` are into `contents`, which becomes readable or damaged.
void readZip(std::string_view bytes, Contents& contents);

} // namespace ostrel::bundle_reader
