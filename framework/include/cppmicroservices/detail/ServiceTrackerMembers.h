// The members of ServiceTracker, for ServiceTracker.h alone.
#pragma once

#include "cppmicroservices/ServiceException.h"

#include <algorithm>
#include <stdexcept>

namespace cppmicroservices {

/// Calls the customizer with the types of the tracker.
template <class S, class T>
class ServiceTracker<S, T>::Calls : public detail::TrackedServices::Customizer {
public:
    using Object = detail::TrackedServices::Object;

    explicit Calls(ServiceTrackerCustomizer<S, T>& customizer) : m_customizer(customizer) {}

    Object adding(ServiceReferenceBase const& item, ServiceEvent const&) override
    {
        ServiceReference<S> const reference(item);
        return reference ? m_customizer.AddingService(reference) : nullptr;
    }

    void modified(ServiceReferenceBase const& item, ServiceEvent const&, Object const& object) override
    {
        m_customizer.ModifiedService(ServiceReference<S>(item), objectOf(object));
    }

    void removed(ServiceReferenceBase const& item, ServiceEvent const&, Object const& object) override
    {
        m_customizer.RemovedService(ServiceReference<S>(item), objectOf(object));
    }

private:
    ServiceTrackerCustomizer<S, T>& m_customizer;
};

template <class S, class T>
std::string const& ServiceTracker<S, T>::className()
{
    std::string const& name = us_service_interface_iid<S>();
    if (name.empty()) {
        throw ServiceException("The service interface class has no CPPMICROSERVICES_DECLARE_SERVICE_INTERFACE macro");
    }
    return name;
}

template <class S, class T>
std::shared_ptr<typename ServiceTracker<S, T>::TrackedParamType>
ServiceTracker<S, T>::objectOf(detail::ServiceTracking::Object const& object)
{
    return std::static_pointer_cast<TrackedParamType>(std::const_pointer_cast<void>(object));
}

template <class S, class T>
ServiceTracker<S, T>::~ServiceTracker()
{
    m_tracking->closeQuietly();
}

template <class S, class T>
ServiceTracker<S, T>::ServiceTracker(BundleContext const& context, ServiceReference<S> const& reference,
                                     ServiceTrackerCustomizer<S, T>* customizer)
    : m_customizer(customizer != nullptr ? customizer : this),
      m_tracking(std::make_unique<detail::ServiceTracking>(context, reference))
{
}

template <class S, class T>
ServiceTracker<S, T>::ServiceTracker(BundleContext const& context, std::string const& clazz,
                                     ServiceTrackerCustomizer<S, T>* customizer)
    : m_customizer(customizer != nullptr ? customizer : this),
      m_tracking(std::make_unique<detail::ServiceTracking>(context, clazz))
{
}

template <class S, class T>
ServiceTracker<S, T>::ServiceTracker(BundleContext const& context, LDAPFilter const& filter,
                                     ServiceTrackerCustomizer<S, T>* customizer)
    : m_customizer(customizer != nullptr ? customizer : this),
      m_tracking(std::make_unique<detail::ServiceTracking>(context, filter))
{
}

template <class S, class T>
ServiceTracker<S, T>::ServiceTracker(BundleContext const& context, ServiceTrackerCustomizer<S, T>* customizer)
    : ServiceTracker(context, className(), customizer)
{
}

template <class S, class T>
void ServiceTracker<S, T>::Open()
{
    m_tracking->open(std::make_unique<Calls>(*m_customizer), [](ServiceReferenceBase const& service) {
        return ServiceReferenceU(ServiceReference<S>(service));
    });
}

template <class S, class T>
void ServiceTracker<S, T>::Close()
{
    m_tracking->close();
}

template <class S, class T>
std::shared_ptr<typename ServiceTracker<S, T>::TrackedParamType> ServiceTracker<S, T>::WaitForService()
{
    return WaitForService(std::chrono::seconds::zero());
}

template <class S, class T>
template <class Rep, class Period>
std::shared_ptr<typename ServiceTracker<S, T>::TrackedParamType>
ServiceTracker<S, T>::WaitForService(std::chrono::duration<Rep, Period> const& rel_time)
{
    return objectOf(m_tracking->waitFor([this] { return detail::ServiceTracking::Object(GetService()); },
                                        std::chrono::duration<double>(rel_time).count()));
}

template <class S, class T>
std::vector<ServiceReference<S>> ServiceTracker<S, T>::GetServiceReferences() const
{
    std::vector<ServiceReference<S>> references;
    if (auto const items = m_tracking->items()) {
        for (auto const& entry : items->entries()) {
            references.emplace_back(entry.item);
        }
    }
    return references;
}

template <class S, class T>
ServiceReference<S> ServiceTracker<S, T>::GetServiceReference() const
{
    auto const references = GetServiceReferences();
    auto const best = std::max_element(references.begin(), references.end());
    if (best == references.end()) {
        throw ServiceException("No service is being tracked");
    }
    return *best;
}

template <class S, class T>
std::shared_ptr<typename ServiceTracker<S, T>::TrackedParamType>
ServiceTracker<S, T>::GetService(ServiceReference<S> const& reference) const
{
    auto const items = m_tracking->items();
    return items ? objectOf(items->find(reference)) : nullptr;
}

template <class S, class T>
std::vector<std::shared_ptr<typename ServiceTracker<S, T>::TrackedParamType>> ServiceTracker<S, T>::GetServices() const
{
    std::vector<std::shared_ptr<TrackedParamType>> services;
    if (auto const items = m_tracking->items()) {
        for (auto const& entry : items->entries()) {
            services.push_back(objectOf(entry.object));
        }
    }
    return services;
}

template <class S, class T>
std::shared_ptr<typename ServiceTracker<S, T>::TrackedParamType> ServiceTracker<S, T>::GetService() const
{
    auto const items = m_tracking->items();
    if (!items || items->size() == 0) {
        return nullptr;
    }
    if (auto const known = items->best()) {
        return objectOf(known);
    }
    auto const asOf = items->changes();
    try {
        auto const service = GetService(GetServiceReference());
        items->rememberBest(service, asOf);
        return service;
    } catch (ServiceException const&) {
        return nullptr; // the last one went in between
    }
}

template <class S, class T>
void ServiceTracker<S, T>::Remove(ServiceReference<S> const& reference)
{
    if (auto const items = m_tracking->items()) {
        items->remove(reference, ServiceEvent());
    }
}

template <class S, class T>
int ServiceTracker<S, T>::Size() const
{
    auto const items = m_tracking->items();
    return items ? static_cast<int>(items->size()) : 0;
}

template <class S, class T>
int ServiceTracker<S, T>::GetTrackingCount() const
{
    auto const items = m_tracking->items();
    return items ? items->count() : -1;
}

template <class S, class T>
void ServiceTracker<S, T>::GetTracked(TrackingMap& tracked) const
{
    if (auto const items = m_tracking->items()) {
        for (auto const& entry : items->entries()) {
            tracked.emplace(ServiceReference<S>(entry.item), objectOf(entry.object));
        }
    }
}

template <class S, class T>
bool ServiceTracker<S, T>::IsEmpty() const
{
    return Size() == 0;
}

template <class S, class T>
std::shared_ptr<typename ServiceTracker<S, T>::TrackedParamType>
ServiceTracker<S, T>::AddingService(ServiceReference<S> const& reference)
{
    BundleContext context = m_tracking->context();
    try {
        return TypeTraits::ConvertToTrackedType(context.GetService(reference));
    } catch (std::invalid_argument const&) {
        if (reference) {
            throw;
        }
        return nullptr; // unregistered by another thread since it was found
    }
}

template <class S, class T>
void ServiceTracker<S, T>::ModifiedService(ServiceReference<S> const&, std::shared_ptr<TrackedParamType> const&)
{
}

template <class S, class T>
void ServiceTracker<S, T>::RemovedService(ServiceReference<S> const&, std::shared_ptr<TrackedParamType> const&)
{
}

} // namespace cppmicroservices
