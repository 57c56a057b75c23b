#pragma once

#include <string>

namespace ostrel::platform {

/// What a look at a manifest tells without a framework.
struct ManifestCheck {
    std::string fault;   ///< why it is no manifest: no JSON, or no JSON object; empty when it is one
    std::string version; ///< "bundle.version" as framework versions print; "0.0.0" when absent; empty when malformed
};

/// Reads the text of a manifest.json. Nesting is bounded, so no text exhausts the stack.
///
/// @throws std::bad_alloc and nothing else
/// @locks  none
ManifestCheck checkManifest(const std::string& text);

} // namespace ostrel::platform
