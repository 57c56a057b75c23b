#pragma once

#include "cppmicroservices/AnyMap.h"
#include "cppmicroservices/BundleVersion.h"

#include <string>

namespace cppmicroservices::detail::core {

/// Objects and arrays may lie this deep in one another; reading and destroying them is recursive.
constexpr int manifestDepthLimit = 200;

/// Reads the text of a manifest.
///
/// Objects become maps whose keys are found without regard to case, arrays become std::vector<Any>. Left out are null
/// and integers that are no int. Of keys that are equal but for case the first one wins.
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
