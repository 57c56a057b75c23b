#pragma once

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>

#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace ostrel::platform {

/// What is installed in one framework, for who wants to know why a file was refused.
///
/// It costs a look at every installed bundle and its file, so nothing of it is made before it is asked for, and then
/// once: one serves a single call of installBundles().
class InstalledFiles {
public:
    explicit InstalledFiles(cppmicroservices::BundleContext context) : m_context{std::move(context)} {}

    /// The location under which the file at `path` is installed, by whatever spelling or link; of several the first in
    /// the framework's order. None when the framework cannot tell what is installed.
    ///
    /// @throws std::bad_alloc and nothing else
    std::optional<std::string> locationOf(const std::string& path);

    /// To be called for what is installed from now on.
    void add(const std::string& location);

    /// All bundles; none when the framework cannot tell them.
    ///
    /// @throws std::bad_alloc and nothing else
    std::vector<cppmicroservices::Bundle> bundles() const;

private:
    using FileId = std::pair<dev_t, ino_t>;

    static std::optional<FileId> idOf(const std::string& path);

    cppmicroservices::BundleContext m_context;
    std::optional<std::map<FileId, std::string>> m_locations;
};

} // namespace ostrel::platform
