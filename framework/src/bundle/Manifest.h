#pragma once

#include "cppmicroservices/AnyMap.h"
#include "cppmicroservices/BundleVersion.h"

#include <string>

namespace cppmicroservices::detail::core {

/// Reads the text of a manifest.
///
/// Objects become maps whose keys are found without regard to case, arrays become std::vector<Any>. What is left out,
/// and which of several keys counts, is told in bundle_reader/manifest/ManifestRules.h.
///
/// @throws std::runtime_error that names the bundle and the location
AnyMap parseManifest(std::string const& text, std::string const& bundle, std::string const& location);

/// Checks what a manifest must have, and reads the version that it gives ("0.0.0" when it gives none).
///
/// @throws std::runtime_error that names the bundle and the location
BundleVersion checkManifest(AnyMap const& manifest, std::string const& bundle, std::string const& location);

/// True when the manifest says that the bundle has an activator.
bool asksForActivator(AnyMap const& manifest);

} // namespace cppmicroservices::detail::core
