#pragma once

#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/ServiceEvent.h"
#include "cppmicroservices/ServiceReference.h"
#include "cppmicroservices/detail/TrackedItems.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace cppmicroservices {

class LDAPFilter;

namespace detail {

/// The part of a ServiceTracker that does not depend on its types: which services, opening, closing, waiting.
class US_Framework_EXPORT ServiceTracking {
public:
    using Object = TrackedServices::Object;

    /// Makes a reference one of the tracked interface; a false one when the service does not have it.
    using Narrow = ServiceReferenceU (*)(ServiceReferenceBase const&);

    /// @throws std::invalid_argument when the reference is default constructed
    ServiceTracking(BundleContext context, ServiceReferenceBase const& reference);
    ServiceTracking(BundleContext context, std::string const& className);

    /// @throws std::invalid_argument when the context is invalid
    ServiceTracking(BundleContext context, LDAPFilter const& filter);

    /// Tracks from now on; without effect when it does already.
    ///
    /// @throws std::runtime_error when the context is no longer valid
    /// @throws what the customizer throws; the services that come after the one it fails for are not added then
    void open(std::unique_ptr<TrackedServices::Customizer> customizer, Narrow narrow);

    /// Ends the tracking; without effect when that is done. Waits for the calls of the customizer that events made in
    /// other threads, unless called from such a call.
    ///
    /// @throws the first exception of the customizer, after it was told of all services
    void close();

    /// As close(); what the customizer throws becomes a framework event.
    void closeQuietly() noexcept;

    /// What is tracked since the last opening; null before the first.
    std::shared_ptr<TrackedServices> items() const;

    BundleContext const& context() const { return m_context; }

    /// Waits until `get` has something; null when the tracking is closed or the time is over.
    ///
    /// @param seconds 0: for ever
    /// @throws std::invalid_argument when the time is negative
    /// @throws std::logic_error when the context is invalid, or becomes so during a wait for ever
    Object waitFor(std::function<Object()> const& get, double seconds) const;

private:
    enum class Wake { changed, over };

    Wake waitForChange(std::shared_ptr<TrackedServices> const& items, std::uint64_t since,
                       std::optional<std::chrono::steady_clock::time_point> until) const;
    std::vector<ServiceReferenceU> present() const;
    void removeListener(ListenerToken token) const;

    BundleContext const m_context;
    std::string m_filter;
    std::optional<std::string> m_className;
    std::optional<ServiceReferenceU> m_reference;

    mutable std::mutex m_mutex;               // guards m_items; held for nothing else
    std::shared_ptr<TrackedServices> m_items; // of the last opening
};

} // namespace detail
} // namespace cppmicroservices
