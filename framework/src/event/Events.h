#pragma once

#include "event/ListenerRegistry.h"
#include "framework/ForeignCodeLock.h"
#include "value/Reason.h"

#include "cppmicroservices/BundleEvent.h"
#include "cppmicroservices/FrameworkEvent.h"
#include "cppmicroservices/ServiceEvent.h"

#include <exception>
#include <iosfwd>
#include <memory>
#include <string>
#include <utility>

namespace cppmicroservices {

namespace detail::ldap {
class PropertyTable;
}

namespace detail::core {

class BundleRecord;
struct ReferenceData;

/// The one place through which everything that happens in a framework passes, in the thread that causes it and with no
/// lock of the framework held. Writes the diagnostics of a framework whose property
/// "org.cppmicroservices.framework.log" is true, then calls the listeners.
///
/// What a service or bundle listener throws becomes a framework event; what a framework listener throws is only noted,
/// so that no circle arises. So nothing is thrown here, but a listener may end the thread, which is then unwound.
///
/// No memory is needed to tell of a bundle or a service, so each listener hears of everything. Where memory is short, a
/// framework event may lack its message, and a note is not written.
class Events {
public:
    using Properties = std::shared_ptr<detail::ldap::PropertyTable const>;
    using Service = std::shared_ptr<ReferenceData const>;

    /// @param log null: nothing is written
    explicit Events(std::ostream* log) : m_log(log) {}

    ListenerRegistry& listeners() { return m_listeners; }

    void publish(BundleEvent::Type type, std::shared_ptr<BundleRecord> const& bundle);

    /// @param service a reference for no class, as the listeners get it
    void publish(ServiceEvent::Type type, Service const& service, Properties const& properties);

    /// The service's properties were changed: SERVICE_MODIFIED, then SERVICE_MODIFIED_ENDMATCH.
    void publishModified(Service const& service, Properties const& properties, Properties const& former);

    /// @param message a text, or a function that makes one: what that throws only costs the event its message
    template <class Message>
    void publish(FrameworkEvent::Type type, std::shared_ptr<BundleRecord> const& bundle, Message const& message,
                 std::exception_ptr const& exception = nullptr)
    {
        std::string text;
        (void)caughtFrom([&] { text = textOf(message); });
        publishText(type, bundle, text, exception);
    }

    /// Whether the calling thread is in a call of one of the listeners.
    bool callsFromThisThread() const;

    /// A remark that is no event.
    ///
    /// @param message as above; asked only where the remark is written, which it is not when that throws
    template <class Message>
    void note(Message const& message)
    {
        if (m_log != nullptr) {
            (void)caughtFrom([&] { write(textOf(message)); });
        }
    }

private:
    static std::string textOf(char const* message) { return message; }
    static std::string textOf(std::string const& message) { return message; }
    template <class MakeText>
    static std::string textOf(MakeText const& makeText)
    {
        return makeText();
    }

    template <class L, class Event>
    std::exception_ptr call(L const& listener, Event const& event) const;
    template <class Wanted>
    void deliver(ServiceEvent const& event, ServiceAudience const& audience, Wanted&& wanted);
    ServiceAudience audience(detail::ldap::PropertyTable const& properties);
    void note(ServiceEvent::Type type, ReferenceData const& service);
    void publishText(FrameworkEvent::Type type, std::shared_ptr<BundleRecord> const& bundle, std::string const& message,
                     std::exception_ptr const& exception);
    void write(std::string const& text);

    std::ostream* const m_log;
    ForeignCodeLock m_writing; // held while a line is written to *m_log, which may do anything
    ListenerRegistry m_listeners;
};

} // namespace detail::core

} // namespace cppmicroservices
