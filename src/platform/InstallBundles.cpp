#include "platform/InstallBundles.h"

#include "platform/BundleFileCheck.h"
#include "platform/InstallError.h"
#include "platform/RegularFiles.h"
#include "platform/Utf8.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <utility>

namespace ostrel::platform {
namespace {

using cppmicroservices::Bundle;
using cppmicroservices::BundleContext;

std::string narrow(const Utf16Path& path)
{
    std::u16string text = path.path();
    if (path.flag()) {
        std::replace(text.begin(), text.end(), u'\\', u'/');
    }
    std::string converted;
    try {
        converted = toUtf8(text);
    } catch (const std::runtime_error& error) {
        failInstall(std::string{"the path cannot be used: "} + error.what());
    }
    if (converted.find('\0') != std::string::npos) {
        failInstall("the path '" + std::string{converted.c_str()} +
                    "' goes on after a zero character; give a path without");
    }
    return converted;
}

std::string canonical(const std::string& path)
{
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    const std::unique_ptr<char, Free> resolved{::realpath(path.c_str(), nullptr)};
    if (!resolved) {
        failToRead(path, errno);
    }
    return resolved.get();
}

/// Installs files one by one into one framework and gathers their bundles.
class Installation {
public:
    /// @throws the framework's own error when `context` is not valid
    explicit Installation(BundleContext context) : m_context{std::move(context)}
    {
        for (const Bundle& bundle : m_context.GetBundles()) {
            remember(bundle.GetLocation());
        }
    }

    void install(const std::string& path, FileRole role)
    {
        const auto identities = bundlesIn(path, role);
        if (identities.empty()) {
            return;
        }
        const std::string location = locationOf(path);
        for (const Bundle& bundle : installFile(path, location, identities)) {
            if (m_returned.insert(bundle.GetBundleId()).second) {
                m_bundles.push_back(bundle);
            }
        }
        remember(location);
    }

    std::vector<Bundle> take() { return std::move(m_bundles); }

private:
    using FileId = std::pair<dev_t, ino_t>;

    void remember(const std::string& location)
    {
        struct stat status {};
        if (::stat(location.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
            m_locations.emplace(FileId{status.st_dev, status.st_ino}, location);
        }
    }

    /// The canonical path, unless the file is installed under another spelling or hard link already.
    std::string locationOf(const std::string& path) const
    {
        std::string location = canonical(path);
        struct stat status {};
        if (::stat(location.c_str(), &status) != 0) {
            failToRead(path, errno);
        }
        const auto known = m_locations.find(FileId{status.st_dev, status.st_ino});
        if (known != m_locations.end() && m_context.GetBundles(location).empty()) {
            return known->second;
        }
        return location;
    }

    std::vector<Bundle> installFile(const std::string& path, const std::string& location,
                                    const std::vector<BundleIdentity>& identities)
    {
        try {
            return m_context.InstallBundles(location);
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception& error) {
            if (!m_context) {
                throw; // the framework was stopped meanwhile; that is not the file's fault
            }
            refuseTwin(path, location, identities);
            failInstall("the framework refused '" + path + "': " + error.what());
        }
    }

    void refuseTwin(const std::string& path, const std::string& location,
                    const std::vector<BundleIdentity>& identities) const
    {
        for (const Bundle& bundle : m_context.GetBundles()) {
            for (const BundleIdentity& identity : identities) {
                if (bundle.GetLocation() != location && bundle.GetSymbolicName() == identity.symbolicName &&
                    bundle.GetVersion().ToString() == identity.version) {
                    failInstall("'" + path + "' and '" + bundle.GetLocation() + "' both hold the bundle '" +
                                identity.symbolicName + "', version " + identity.version +
                                "; remove one of the files or give one another version");
                }
            }
        }
    }

    BundleContext m_context;
    std::map<FileId, std::string> m_locations;
    std::set<long> m_returned;
    std::vector<Bundle> m_bundles;
};

} // namespace

std::vector<Bundle> installBundles(BundleContext context, const Utf16Path& path)
{
    Installation installation{std::move(context)};

    const std::string name = narrow(path);
    struct stat status {};
    if (::stat(name.c_str(), &status) != 0) {
        failToRead(name, errno);
    }
    if (S_ISDIR(status.st_mode)) {
        const std::string prefix = name.back() == '/' ? name : name + '/';
        for (const std::string& file : regularFiles(name)) {
            installation.install(prefix + file, FileRole::listed);
        }
    } else if (S_ISREG(status.st_mode)) {
        installation.install(name, FileRole::named);
    } else {
        failInstall("'" + name + "' is neither a directory nor a file; give the path of one");
    }
    return installation.take();
}

} // namespace ostrel::platform
