#pragma once

#include "cppmicroservices/AnyMap.h"
#include "cppmicroservices/BundleVersion.h"
#include "cppmicroservices/GlobalConfig.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace cppmicroservices {

class BundleContext;
class BundleResource;
template <class S>
class ServiceReference;
using ServiceReferenceU = ServiceReference<void>;

namespace detail::core {
class BundleRecord;
class FrameworkHold;
class HandleAccess;
} // namespace detail::core

/// A handle on an installed bundle. Copies name the same bundle; a handle keeps its framework alive.
///
/// Every member but the constructors, the comparisons and `bool` throws std::invalid_argument "invalid bundle" on a
/// default constructed handle. All members may be called from any thread; a handle itself is not to be assigned while
/// another thread uses it.
class US_Framework_EXPORT Bundle {
public:
    using TimeStamp = std::chrono::steady_clock::time_point;

    enum State : std::uint32_t {
        STATE_UNINSTALLED = 0x00000001,
        STATE_INSTALLED = 0x00000002,
        STATE_RESOLVED = 0x00000004,
        STATE_STARTING = 0x00000008,
        STATE_STOPPING = 0x00000010,
        STATE_ACTIVE = 0x00000020,
    };

    /// Accepted and without effect, as nothing is persisted.
    enum StartOptions : std::uint32_t {
        START_TRANSIENT = 0x00000001,
        START_ACTIVATION_POLICY = 0x00000002,
    };

    /// Accepted and without effect, as nothing is persisted.
    enum StopOptions : std::uint32_t {
        STOP_TRANSIENT = 0x00000001,
    };

    /// A handle on no bundle.
    Bundle();
    Bundle(Bundle const& other);
    Bundle(Bundle&& other) noexcept;
    Bundle& operator=(Bundle const& other);
    Bundle& operator=(Bundle&& other) noexcept;
    Bundle& operator=(std::nullptr_t);
    virtual ~Bundle();

    /// Equal when both name the same bundle, or none.
    bool operator==(Bundle const& rhs) const;
    bool operator!=(Bundle const& rhs) const;

    /// By id; a bundle is less than a handle on none.
    bool operator<(Bundle const& rhs) const;

    /// True unless the handle names no bundle; an uninstalled bundle is still one.
    explicit operator bool() const;

    State GetState() const;

    /// The bundle's context while it is starting, active or stopping, else an invalid one.
    BundleContext GetBundleContext() const;

    /// Drawn at installation, never used again within one run of the framework; 0 for the framework itself.
    long GetBundleId() const;

    /// The location as given to BundleContext::InstallBundles().
    std::string GetLocation() const;

    /// The name of the bundle's folder in its file.
    std::string GetSymbolicName() const;

    BundleVersion GetVersion() const;

    /// The address of a symbol in a library that the caller holds a handle of dlopen() on; null when there is none.
    ///
    /// @throws std::invalid_argument for a null handle, an empty name or a handle on no bundle
    /// @throws std::runtime_error unless the bundle is active
    void* GetSymbol(void* handle, std::string const& symname) const;

    /// The manifest, with a std::map for each AnyMap in it; empty for the framework itself. Use GetHeaders().
    US_DEPRECATED std::map<std::string, Any> GetProperties() const;

    /// The manifest's value of exactly that key, else that property of the framework, else an empty Any. Use
    /// GetHeaders() and BundleContext::GetProperty().
    US_DEPRECATED Any GetProperty(std::string const& key) const;

    /// The keys of the manifest in order. Use GetHeaders().
    US_DEPRECATED std::vector<std::string> GetPropertyKeys() const;

    /// The manifest. Keys are found without regard to case. Valid as long as a handle on the bundle exists.
    AnyMap const& GetHeaders() const;

    /// In order of registration.
    ///
    /// @throws std::logic_error when the bundle is uninstalled
    std::vector<ServiceReferenceU> GetRegisteredServices() const;

    /// In order of the services' registration.
    ///
    /// @throws std::logic_error when the bundle is uninstalled
    std::vector<ServiceReferenceU> GetServicesInUse() const;

    /// The file or folder of that path in the bundle's folder; an invalid resource when there is none.
    ///
    /// The path may begin with a slash, several slashes in a row count as one, and the case of the letters A to Z
    /// matters only between names that differ by nothing else. A folder's path ends in a slash, "/" is the bundle's own
    /// folder. "." and ".." mean nothing special. A folder is found only when the archive has an entry of its own for
    /// it.
    ///
    /// @throws std::logic_error when the bundle is uninstalled
    /// @throws std::runtime_error when the bundle was installed from a file without an archive; or when the file was
    ///         removed or changed before a resource of it was first asked for
    /// @locks  that of the bundle's file, when it is opened by this
    BundleResource GetResource(std::string const& path) const;

    /// The files and folders in the folder `path` whose names match; a name is the last part of a path.
    ///
    /// @param path         slashes in front and behind may be left out; the case of letters matters
    /// @param filePattern  texts with '*' between them that must occur in the name one after the other; they need not
    ///                     begin or end it: "a*b" is the same as "*a*b*". Empty for all names.
    /// @param recurse      whether to look into the folders in it too
    /// @return in ascending byte order of name, a folder after what is in it; nothing when there is no such folder
    /// @throws as GetResource()
    std::vector<BundleResource> FindResources(std::string const& path, std::string const& filePattern,
                                              bool recurse) const;

    /// When the bundle was installed.
    TimeStamp GetLastModified() const;

    /// Starts the bundle: loads its library at the first start and runs its activator, in the calling thread. Waits
    /// for another thread that is starting or stopping the bundle. Without effect on an active bundle.
    ///
    /// @throws std::runtime_error when the activator fails (with its message), when the framework has stopped or is
    ///         stopping, or when waiting could never end (called from inside the bundle's own activator)
    /// @throws std::logic_error when the bundle is uninstalled
    /// @throws SharedLibraryException when the library cannot be loaded
    /// @throws SecurityException when the framework's validation function refuses the bundle
    /// @locks  none while the activator runs
    void Start();
    void Start(std::uint32_t options);

    /// Stops the bundle: runs its activator's Stop in the calling thread, unregisters its services, releases those
    /// that it uses. Without effect unless the bundle is active.
    ///
    /// @throws std::runtime_error after everything is cleaned up, when the activator fails; at once, when waiting
    ///         could never end (called from inside the bundle's own activator)
    /// @throws std::logic_error when the bundle is uninstalled
    void Stop();
    void Stop(std::uint32_t options);

    /// Stops the bundle if it is active and takes it out of the framework. The library stays loaded. A failing stop
    /// does not keep the bundle from being uninstalled.
    ///
    /// @throws std::logic_error when it is uninstalled already
    /// @throws std::runtime_error on the framework itself, or as Stop() when waiting could never end
    void Uninstall();

protected:
    Bundle(std::shared_ptr<detail::core::BundleRecord> record, std::shared_ptr<detail::core::FrameworkHold> hold);

private:
    friend class detail::core::HandleAccess;

    std::shared_ptr<detail::core::BundleRecord> m_record;
    std::shared_ptr<detail::core::FrameworkHold> m_hold;
};

/// Writes "Bundle[id=…, loc=…, name=…, state=…]".
///
/// @throws std::invalid_argument for a handle on no bundle
US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, Bundle const& bundle);

/// As above.
///
/// @throws std::invalid_argument for a null pointer too
US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, Bundle const* bundle);

/// Writes the state's name without its prefix, and nothing for a value that is no state.
US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, Bundle::State state);

} // namespace cppmicroservices

// clang-format off
US_HASH_FUNCTION_BEGIN(cppmicroservices::Bundle)
    return std::hash<std::string>()(arg.GetSymbolicName());
US_HASH_FUNCTION_END
// clang-format on
