#pragma once

#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>

#include <string>
#include <vector>

namespace ostrel::test {

/// Installs bundles that have nothing but a name, in the order of their names: given manifests make the framework read
/// none in the file, so that any file does. Once for each framework. `more` is added to the manifests.
inline std::vector<cppmicroservices::Bundle> installByManifest(cppmicroservices::BundleContext context,
                                                               std::vector<std::string> const& names,
                                                               cppmicroservices::AnyMap const& more = {})
{
    using cppmicroservices::AnyMap;
    AnyMap manifests(AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS);
    for (auto const& name : names) {
        AnyMap manifest(more);
        manifest["bundle.symbolic_name"] = name;
        manifests[name] = manifest;
    }
    return context.InstallBundles("/proc/self/exe", manifests);
}

} // namespace ostrel::test
