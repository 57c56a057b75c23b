#include "hosting/InstalledBundles.h"

namespace ostrel::host {

using cppmicroservices::Bundle;

Bundle InstalledBundles::of(const inspection::PlannedBundle& planned) const
{
    return planned.id ? m_context.GetBundle(*planned.id) : Bundle{};
}

Bundle InstalledBundles::culprit(const std::string& message) const
{
    Bundle found;
    std::string foundLocation;
    std::size_t foundAt = 0;
    for (const Bundle& bundle : m_context.GetBundles()) {
        const std::string location = bundle.GetLocation();
        const std::size_t at = message.rfind(location);
        if (bundle.GetBundleId() == 0 || at == std::string::npos) {
            continue;
        }
        // A location may be the beginning of another one.
        if (!found || at > foundAt || (at == foundAt && location.size() > foundLocation.size())) {
            found = bundle;
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
