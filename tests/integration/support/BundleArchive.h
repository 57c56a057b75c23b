#pragma once

#include "support/Host.h"

#include <string>
#include <vector>

namespace ostrel::test {

/// One bundle without code: its symbolic name and the text of its manifest.
struct ArchivedBundle {
    std::string symbolicName;
    std::string manifest;
};

/// A manifest with the symbolic name and, unless `zq` is empty, the JSON text `zq` under "zq".
ArchivedBundle bundleWith(const std::string& symbolicName, const std::string& zq = "");

/// As bundleWith(), with a component name and, unless it is empty, a filter declaration in JSON.
ArchivedBundle componentWith(const std::string& symbolicName, const std::string& componentName,
                             const std::string& filters = "");

/// Writes a bare archive of bundles into the host's directory. Such bundles start without running any code; a test
/// registers services in their name through their contexts.
/// @return the file name
std::string addArchive(const Host& host, const std::string& fileName, const std::vector<ArchivedBundle>& bundles);

} // namespace ostrel::test
