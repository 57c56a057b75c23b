#include "platform/InstallBundles.h"

#include "bundle_reader/file/FileList.h"
#include "platform/BundleFileCheck.h"
#include "platform/InstallError.h"
#include "platform/InstalledFiles.h"
#include "platform/Utf8.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
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

/// Whether the path names each folder from the root on, once and without detours.
bool isDirect(const std::string& path)
{
    if (path.empty() || path.front() != '/') {
        return false;
    }
    for (std::size_t begin = 1; begin <= path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const std::string_view part = std::string_view{path}.substr(begin, end - begin);
        if (part.empty() || part == "." || part == "..") {
            return false;
        }
        begin = end + 1;
    }
    return true;
}

/// As canonical(), for a file that was just read, which saves asking for each part of the path.
std::string canonicalOf(const std::string& path, const bundle_reader::Contents& contents)
{
    return contents.reachedWithoutLinks && isDirect(path) ? path : canonical(path);
}

/// Installs files one by one into one framework and gathers their bundles.
class Installation {
public:
    /// @throws the framework's own error when `context` is not valid
    explicit Installation(BundleContext context) : m_context{std::move(context)}, m_installed{m_context}
    {
        if (!m_context) {
            m_context.GetBundle();
        }
    }

    void install(const std::string& path, const bundle_reader::Contents& contents, FileRole role)
    {
        const auto identities = bundlesIn(path, contents, role);
        if (identities.empty()) {
            return;
        }
        for (const Bundle& bundle : installFile(path, canonicalOf(path, contents), identities)) {
            if (m_returned.insert(bundle.GetBundleId()).second) {
                m_bundles.push_back(bundle);
            }
        }
    }

    std::vector<Bundle> take() { return std::move(m_bundles); }

private:
    struct Attempt {
        std::vector<Bundle> bundles;
        std::optional<std::string> refusal; ///< the framework's words
    };

    /// Installs the file at its canonical path; where that is refused, under the spelling or link under which it is
    /// installed already.
    std::vector<Bundle> installFile(const std::string& path, std::string location,
                                    const std::vector<BundleIdentity>& identities)
    {
        Attempt attempt = tryAt(location);
        if (attempt.refusal) {
            if (auto known = m_installed.locationOf(location)) {
                location = std::move(*known);
                attempt = tryAt(location);
            }
        }
        if (attempt.refusal) {
            refuseTwin(path, location, identities);
            failInstall("the framework refused '" + path + "': " + *attempt.refusal);
        }
        m_installed.add(location);
        return std::move(attempt.bundles);
    }

    Attempt tryAt(const std::string& location)
    {
        try {
            return {m_context.InstallBundles(location), std::nullopt};
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception& error) {
            if (!m_context) {
                throw; // the framework was stopped meanwhile; that is not the file's fault
            }
            return {{}, error.what()};
        }
    }

    void refuseTwin(const std::string& path, const std::string& location,
                    const std::vector<BundleIdentity>& identities) const
    {
        for (const Bundle& bundle : m_installed.bundles()) {
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
    InstalledFiles m_installed;
    std::set<long> m_returned;
    std::vector<Bundle> m_bundles;
};

} // namespace

std::vector<Bundle> installBundles(BundleContext context, const Utf16Path& path)
{
    Installation installation{std::move(context)};

    const std::string name = narrow(path);
    // Mostly a file is asked for, and reading it tells that it is one. All else is told by the status.
    if (const auto contents = readIfFile(name)) {
        installation.install(name, *contents, FileRole::named);
        return installation.take();
    }
    struct stat status {};
    if (::stat(name.c_str(), &status) != 0) {
        failToRead(name, errno);
    }
    if (S_ISDIR(status.st_mode)) {
        const std::string prefix = name.back() == '/' ? name : name + '/';
        const bundle_reader::FileList list = bundle_reader::listFiles(name);
        if (list.error != 0) {
            failToRead(list.unreadable, list.error);
        }
        for (const std::string& file : list.files) {
            const std::string filePath = prefix + file;
            installation.install(filePath, readBundleFile(filePath), FileRole::listed);
        }
    } else if (S_ISREG(status.st_mode)) {
        installation.install(name, readBundleFile(name), FileRole::named);
    } else {
        failInstall("'" + name + "' is neither a directory nor a file; give the path of one");
    }
    return installation.take();
}

} // namespace ostrel::platform
