#pragma once

#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/Constants.h"
#include "cppmicroservices/LDAPFilter.h"
#include "cppmicroservices/ServiceEvent.h"
#include "cppmicroservices/ServiceReference.h"
#include "cppmicroservices/ServiceTrackerCustomizer.h"
#include "cppmicroservices/detail/ServiceTracking.h"

// Sources written for this header count on some that it does not need itself.
#include <chrono>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace cppmicroservices {

/// Keeps an object for each service of a class, of a filter or of one reference; by default the service itself.
///
/// All members may be called from any thread. The customizer is called with no lock held, in the thread that causes the
/// change; what it throws in a call by an event becomes a framework event, otherwise the caller of the member gets it.
template <class S, class T = S>
class ServiceTracker : protected ServiceTrackerCustomizer<S, T> {
public:
    using TrackedParamType = typename ServiceTrackerCustomizer<S, T>::TrackedParamType;
    using TrackingMap = std::unordered_map<ServiceReference<S>, std::shared_ptr<TrackedParamType>>;

    /// Closes the tracker; what the customizer throws becomes a framework event.
    ~ServiceTracker() override;

    /// Tracks the service of that reference, while it is registered.
    ///
    /// @param customizer has to live until the tracker is closed. Null: the tracker's own functions are called, which a
    ///        subclass may override.
    /// @throws std::invalid_argument when the reference is default constructed
    ServiceTracker(BundleContext const& context, ServiceReference<S> const& reference,
                   ServiceTrackerCustomizer<S, T>* customizer = nullptr);

    /// Tracks the services of a class, those that have the interface S.
    ServiceTracker(BundleContext const& context, std::string const& clazz,
                   ServiceTrackerCustomizer<S, T>* customizer = nullptr);

    /// Tracks the services that match, those that have the interface S; all of them with an empty filter.
    ///
    /// @throws std::invalid_argument when the context is not valid
    ServiceTracker(BundleContext const& context, LDAPFilter const& filter,
                   ServiceTrackerCustomizer<S, T>* customizer = nullptr);

    /// Tracks the services of interface S.
    ///
    /// @throws ServiceException when the interface has no name, as void
    ServiceTracker(BundleContext const& context, ServiceTrackerCustomizer<S, T>* customizer = nullptr);

    /// Begins to track, with the services that are there, the best first; without effect on an open tracker.
    ///
    /// @throws std::runtime_error when the context is no longer valid
    /// @throws what the customizer throws for a service that is there already; the tracker is open then, without the
    ///         services that come after it
    virtual void Open();

    /// Ends the tracking: the customizer is told that all services are removed. Waits for the calls of the customizer
    /// that events made in other threads, unless called from such a call. Without effect when the tracker is not open.
    ///
    /// @throws what the customizer throws first, when all services are removed
    virtual void Close();

    /// Waits until a service is tracked; null when the tracker is not open or is closed.
    ///
    /// @throws std::logic_error when the context is no longer valid, also during the wait
    std::shared_ptr<TrackedParamType> WaitForService();

    /// As above, and null when the time is over. Zero: for ever.
    ///
    /// @throws std::invalid_argument "negative timeout"
    /// @throws std::logic_error when the context is not valid at the beginning
    template <class Rep, class Period>
    std::shared_ptr<TrackedParamType> WaitForService(std::chrono::duration<Rep, Period> const& rel_time);

    /// From the last added to the first.
    virtual std::vector<ServiceReference<S>> GetServiceReferences() const;

    /// The best one of GetServiceReferences(): by ranking, then by age.
    ///
    /// @throws ServiceException when no service is tracked
    virtual ServiceReference<S> GetServiceReference() const;

    /// Null when that service is not tracked.
    virtual std::shared_ptr<TrackedParamType> GetService(ServiceReference<S> const& reference) const;

    /// In the order of GetServiceReferences().
    virtual std::vector<std::shared_ptr<TrackedParamType>> GetServices() const;

    /// The object of GetServiceReference(); null when no service is tracked.
    ///
    /// @cost constant unless something was added, changed or removed since the last call; linear then
    virtual std::shared_ptr<TrackedParamType> GetService() const;

    /// Takes a service out, until its next change.
    virtual void Remove(ServiceReference<S> const& reference);

    virtual int Size() const;

    /// How often a service was added, changed or removed since the opening; -1 when the tracker is not open.
    virtual int GetTrackingCount() const;

    /// Adds what is tracked to the map; what is in it stays.
    virtual void GetTracked(TrackingMap& tracked) const;

    virtual bool IsEmpty() const;

protected:
    /// Gets the service; null when it is gone or its factory does not deliver.
    ///
    /// @throws std::runtime_error when T is not S
    std::shared_ptr<TrackedParamType> AddingService(ServiceReference<S> const& reference) override;
    void ModifiedService(ServiceReference<S> const& reference,
                         std::shared_ptr<TrackedParamType> const& service) override;
    void RemovedService(ServiceReference<S> const& reference,
                        std::shared_ptr<TrackedParamType> const& service) override;

private:
    using TypeTraits = typename ServiceTrackerCustomizer<S, T>::TypeTraits;
    class Calls;

    static std::string const& className();
    static std::shared_ptr<TrackedParamType> objectOf(detail::ServiceTracking::Object const& object);

    ServiceTrackerCustomizer<S, T>* const m_customizer;
    std::unique_ptr<detail::ServiceTracking> const m_tracking;
};

} // namespace cppmicroservices

#include "cppmicroservices/detail/ServiceTrackerMembers.h"
