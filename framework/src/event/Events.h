#pragma once

#include "event/ListenerRegistry.h"
#include "framework/ForeignCodeLock.h"

#include "cppmicroservices/BundleEvent.h"
#include "cppmicroservices/FrameworkEvent.h"
#include "cppmicroservices/ServiceEvent.h"

#include <exception>
#include <iosfwd>
#include <memory>
#include <string>

namespace cppmicroservices {

namespace detail::ldap {
class PropertyTable;
}

namespace detail::core {

class BundleRecord;
class ServiceRecord;

/// The one place through which everything that happens in a framework passes, in the thread that causes it and with no
/// lock of the framework held. Writes the diagnostics of a framework whose property
/// "org.cppmicroservices.framework.log" is true, then calls the listeners.
///
/// What a service or bundle listener throws becomes a framework event; what a framework listener throws is only noted,
/// so that no circle arises. So nothing is thrown here, but a listener may end the thread, which is then unwound.
class Events {
public:
    using Properties = std::shared_ptr<detail::ldap::PropertyTable const>;

    /// @param log null: nothing is written
    explicit Events(std::ostream* log) : m_log(log) {}

    ListenerRegistry& listeners() { return m_listeners; }

    void publish(BundleEvent::Type type, std::shared_ptr<BundleRecord> const& bundle);

    /// @param properties of the service
    void publish(ServiceEvent::Type type, std::shared_ptr<ServiceRecord> const& service, Properties const& properties);

    /// The service's properties were changed: SERVICE_MODIFIED, then SERVICE_MODIFIED_ENDMATCH.
    void publishModified(std::shared_ptr<ServiceRecord> const& service, Properties const& properties,
                         Properties const& former);

    void publish(FrameworkEvent::Type type, std::shared_ptr<BundleRecord> const& bundle, std::string const& message,
                 std::exception_ptr const& exception = nullptr);

    /// Whether the calling thread is in a call of one of the listeners.
    bool callsFromThisThread() const;

    /// A remark that is no event.
    void note(std::string const& text);

private:
    template <class L, class Event>
    std::exception_ptr call(L const& listener, Event const& event) const;
    template <class Wanted>
    void deliver(ServiceEvent const& event, ServiceListenerCandidates const& candidates, Wanted&& wanted);
    ServiceListenerCandidates candidates(detail::ldap::PropertyTable const& properties);
    void note(ServiceEvent::Type type, ServiceRecord const& service);

    std::ostream* const m_log;
    ForeignCodeLock m_writing; // held while a line is written to *m_log, which may do anything
    ListenerRegistry m_listeners;
};

} // namespace detail::core

} // namespace cppmicroservices
