#include "hosting/InstalledBundles.h"

#include <cppmicroservices/BundleVersion.h>

namespace ostrel::host {

using cppmicroservices::Bundle;

InstalledBundles::InstalledBundles(const cppmicroservices::BundleContext& context)
{
    for (const Bundle& bundle : context.GetBundles()) {
        if (bundle.GetBundleId() != 0) {
            m_bundles.emplace(Identity{bundle.GetSymbolicName(), bundle.GetVersion().ToString()}, bundle);
        }
    }
}

Bundle InstalledBundles::of(const inspection::PlannedBundle& planned) const
{
    const auto found = m_bundles.find({planned.symbolicName.value_or(""), planned.version.value_or("")});
    return found == m_bundles.end() ? Bundle{} : found->second;
}

Bundle InstalledBundles::culprit(const std::string& message) const
{
    Bundle found;
    std::string foundLocation;
    std::size_t foundAt = 0;
    for (const auto& entry : m_bundles) {
        const std::string location = entry.second.GetLocation();
        const std::size_t at = message.rfind(location);
        if (at == std::string::npos) {
            continue;
        }
        // A location may be the beginning of another one.
        if (!found || at > foundAt || (at == foundAt && location.size() > foundLocation.size())) {
            found = entry.second;
            foundLocation = location;
            foundAt = at;
        }
    }
    return found;
}

std::string InstalledBundles::culpritFile(const std::string& message, const std::string& otherwise) const
{
    const Bundle bundle = culprit(message);
    return bundle ? bundle.GetLocation() : otherwise;
}

} // namespace ostrel::host
