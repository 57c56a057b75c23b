#include "platform/InstalledFiles.h"

#include <exception>
#include <new>
#include <sys/stat.h>

namespace ostrel::platform {

using cppmicroservices::Bundle;

std::optional<std::string> InstalledFiles::locationOf(const std::string& path)
{
    if (!m_locations) {
        m_locations.emplace();
        for (const Bundle& bundle : bundles()) {
            add(bundle.GetLocation());
        }
    }
    const auto id = idOf(path);
    const auto known = id ? m_locations->find(*id) : m_locations->end();
    return known != m_locations->end() ? std::optional{known->second} : std::nullopt;
}

void InstalledFiles::add(const std::string& location)
{
    if (!m_locations) {
        return; // it will be found with all others
    }
    if (const auto id = idOf(location)) {
        m_locations->emplace(*id, location);
    }
}

std::vector<Bundle> InstalledFiles::bundles() const
{
    try {
        return m_context.GetBundles();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        // CppMicroServices 3.8.4 lists nothing any more once another framework of the process has ended.
        return {};
    }
}

std::optional<InstalledFiles::FileId> InstalledFiles::idOf(const std::string& path)
{
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return FileId{status.st_dev, status.st_ino};
}

} // namespace ostrel::platform
