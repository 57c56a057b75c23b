#pragma once

#include "bundle/Activation.h"
#include "framework/ForeignCodeLock.h"

#include "cppmicroservices/Bundle.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

namespace cppmicroservices {

class BundleContextPrivate;

namespace detail::core {

class FrameworkCore;
class FrameworkHold;
class ResourceFile;

/// What never changes about a bundle.
struct BundleIdentity {
    long id;
    std::string name;
    std::string location;
    BundleVersion version;
    AnyMap headers;
    std::shared_ptr<ResourceFile const> resources = nullptr; // none for the framework itself
    unsigned long framework = 0;                             // counts the frameworks of the process
};

/// A bundle as the framework knows it. Outlives the framework where a handle on it does.
class BundleRecord : public std::enable_shared_from_this<BundleRecord> {
public:
    BundleRecord(BundleIdentity identity, std::weak_ptr<FrameworkCore> core, std::weak_ptr<FrameworkHold> hold);

    long id() const { return m_identity.id; }
    std::string const& name() const { return m_identity.name; }
    std::string const& location() const { return m_identity.location; }
    BundleVersion const& version() const { return m_identity.version; }
    AnyMap const& headers() const { return m_identity.headers; }
    /// Null for the framework itself.
    std::shared_ptr<ResourceFile const> const& resources() const { return m_identity.resources; }
    Bundle::TimeStamp installedAt() const { return m_installedAt; }
    bool isSystemBundle() const { return m_identity.id == 0; }

    /// By framework, then by id; bundles of two runs of a framework may have the same id and still be told apart.
    bool isBefore(BundleRecord const& other) const;

    /// "Bundle NAME (location=LOCATION)", as messages name a bundle.
    std::string text() const;

    /// Null when the framework is gone.
    std::shared_ptr<FrameworkCore> core() const { return m_core.lock(); }
    std::shared_ptr<FrameworkHold> hold() const { return m_hold.lock(); }

    Bundle::State state() const { return m_state.load(); }
    void setState(Bundle::State state) { m_state.store(state); }

    /// True once the framework run to which the bundle belongs is over; it can never be started again then.
    bool isDetached() const { return m_detached.load(); }
    void detach() { m_detached.store(true); }

    /// Null while the bundle does not run.
    std::shared_ptr<BundleContextPrivate> context() const;
    void setContext(std::shared_ptr<BundleContextPrivate> context);

    /// Held by the thread that starts, stops or uninstalls the bundle.
    ForeignCodeLock& lifecycleLock() { return m_lifecycleLock; }

    /// The bundle's library and activator; only for the holder of the lifecycle lock.
    Activation& activation() { return m_activation; }

private:
    BundleIdentity const m_identity;
    Bundle::TimeStamp const m_installedAt;
    std::weak_ptr<FrameworkCore> const m_core;
    std::weak_ptr<FrameworkHold> const m_hold;
    std::atomic<Bundle::State> m_state{Bundle::STATE_INSTALLED};
    std::atomic<bool> m_detached{false};
    ForeignCodeLock m_lifecycleLock;
    Activation m_activation;
    mutable std::mutex m_mutex; // guards m_context
    std::shared_ptr<BundleContextPrivate> m_context;
};

} // namespace detail::core

} // namespace cppmicroservices
