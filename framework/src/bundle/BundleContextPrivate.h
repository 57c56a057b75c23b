#pragma once

#include <atomic>
#include <memory>

namespace cppmicroservices {

namespace detail::core {

class BundleRecord;
class FrameworkCore;
class ServiceRegistry;

} // namespace detail::core

/// One run of a bundle, behind its BundleContext handles; also what the slot in the bundle's library points to, hence
/// the name without a namespace of its own.
class BundleContextPrivate : public std::enable_shared_from_this<BundleContextPrivate> {
public:
    static std::shared_ptr<BundleContextPrivate> make(std::shared_ptr<detail::core::BundleRecord> const& bundle,
                                                      std::shared_ptr<detail::core::ServiceRegistry> services);

    BundleContextPrivate(std::weak_ptr<detail::core::BundleRecord> bundle,
                         std::weak_ptr<detail::core::FrameworkCore> core,
                         std::shared_ptr<detail::core::ServiceRegistry> services);
    BundleContextPrivate(BundleContextPrivate const&) = delete;
    BundleContextPrivate& operator=(BundleContextPrivate const&) = delete;
    ~BundleContextPrivate();

    /// The context at an address from a library's slot, or null when it is gone: the slot is read without a lock, so
    /// the address may be an old one.
    static std::shared_ptr<BundleContextPrivate> at(BundleContextPrivate* address);

    /// Null when the framework is gone.
    std::shared_ptr<detail::core::BundleRecord> bundle() const { return m_bundle.lock(); }
    std::shared_ptr<detail::core::FrameworkCore> core() const { return m_core.lock(); }
    std::shared_ptr<detail::core::ServiceRegistry> const& services() const { return m_services; }

    bool isValid() const { return m_valid.load() && !m_bundle.expired() && !m_core.expired(); }
    void invalidate() { m_valid.store(false); }

    // The bundle is stopping: what it would register, get or add now would outlast the cleaning up. Changed under the
    // lock of the services, or of the listeners, so that the cleaning up sees everything that was let through.
    bool mayRegister() const { return m_mayRegister.load(); }
    void refuseRegistrations() { m_mayRegister.store(false); }
    bool mayUse() const { return m_mayUse.load(); }
    void refuseUses() { m_mayUse.store(false); }
    bool mayListen() const { return m_mayListen.load(); }
    void refuseListeners() { m_mayListen.store(false); }

private:
    std::weak_ptr<detail::core::BundleRecord> const m_bundle;
    std::weak_ptr<detail::core::FrameworkCore> const m_core;
    std::shared_ptr<detail::core::ServiceRegistry> const m_services;
    std::atomic<bool> m_valid{true};
    std::atomic<bool> m_mayRegister{true};
    std::atomic<bool> m_mayUse{true};
    std::atomic<bool> m_mayListen{true};
};

} // namespace cppmicroservices
