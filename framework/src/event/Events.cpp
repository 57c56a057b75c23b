#include "event/Events.h"

#include "bundle/BundleRecord.h"
#include "framework/HandleAccess.h"
#include "ldap/FilterAccess.h"
#include "service/ServiceRecord.h"

#include "cppmicroservices/Constants.h"

#include <new>
#include <ostream>
#include <sstream>
#include <utility>

namespace cppmicroservices::detail::core {

namespace {

bool matches(FilteredListener const& listener, detail::ldap::PropertyTable const& properties)
{
    return !listener.filter || detail::ldap::FilterAccess::matches(listener.filter, properties);
}

/// Without its message where there is no memory for that: a fault that is told of in fewer words is better than none.
FrameworkEvent eventOf(FrameworkEvent::Type type, Bundle const& bundle, std::string const& message,
                       std::exception_ptr const& exception)
{
    try {
        return {type, bundle, message, exception};
    } catch (std::bad_alloc const&) {
        return {type, bundle, std::string(), exception};
    }
}

/// A call of a listener by this thread; they lie on its stack, those of all frameworks in one chain.
struct Call {
    explicit Call(Events const& whose) : events(whose), outer(std::exchange(innermost, this)) {}
    Call(Call const&) = delete;
    Call& operator=(Call const&) = delete;
    ~Call() { innermost = outer; }

    Events const& events;
    Call const* const outer;

    static thread_local Call const* innermost;
};

thread_local Call const* Call::innermost = nullptr;

} // namespace

bool Events::callsFromThisThread() const
{
    auto const* call = Call::innermost;
    while (call != nullptr && &call->events != this) {
        call = call->outer;
    }
    return call != nullptr;
}

template <class L, class Event>
std::exception_ptr Events::call(L const& listener, Event const& event) const
{
    Call const call(*this);
    return caughtFrom([&] { listener.call(event); });
}

void Events::publish(BundleEvent::Type type, std::shared_ptr<BundleRecord> const& bundle)
{
    note([&] {
        std::ostringstream text;
        text << "bundle " << type << ' ' << bundle->text();
        return text.str();
    });
    auto const listeners = m_listeners.bundleListeners();
    if (listeners.isEmpty()) {
        return;
    }
    BundleEvent const event(type, HandleAccess::bundle(bundle));
    listeners.forEach([this, &event](Listener<BundleEvent> const& listener) {
        if (auto const thrown = call(listener, event)) {
            publish(FrameworkEvent::FRAMEWORK_ERROR, listener.bundle, "Bundle listener threw an exception", thrown);
        }
    });
}

void Events::note(ServiceEvent::Type type, ReferenceData const& service)
{
    note([&] {
        std::ostringstream text;
        text << "service " << type << ' ' << service.record->id() << " of " << service.record->owner()->text();
        return text.str();
    });
}

ServiceAudience Events::audience(detail::ldap::PropertyTable const& properties)
{
    static std::vector<std::string> const none;
    auto const* const shownId = any_cast<long>(properties.find(Constants::SERVICE_ID));
    auto const* const names = any_cast<std::vector<std::string>>(properties.find(Constants::OBJECTCLASS));
    return m_listeners.serviceListeners(shownId != nullptr ? *shownId : 0, names != nullptr ? *names : none);
}

template <class Wanted>
void Events::deliver(ServiceEvent const& event, ServiceAudience const& audience, Wanted&& wanted)
{
    audience.forEach([this, &event, &wanted](FilteredListener const& listener) {
        bool isWanted = false;
        auto const unclear = caughtFrom([&] { isWanted = wanted(listener); }); // properties are foreign code
        if (auto const thrown = isWanted ? call(listener, event) : unclear) {
            publish(
                FrameworkEvent::FRAMEWORK_ERROR, listener.bundle,
                [&listener] { return "Service listener in " + listener.bundle->name() + " threw an exception!"; },
                thrown);
        }
    });
}

void Events::publish(ServiceEvent::Type type, Service const& service, Properties const& properties)
{
    note(type, *service);
    auto const all = audience(*properties);
    if (!all.isEmpty()) {
        deliver(ServiceEvent(type, HandleAccess::reference(service)), all,
                [&properties](FilteredListener const& listener) { return matches(listener, *properties); });
    }
}

void Events::publishModified(Service const& service, Properties const& properties, Properties const& former)
{
    note(ServiceEvent::SERVICE_MODIFIED, *service);
    auto const all = audience(*properties); // the former id and classes are the same
    if (all.isEmpty()) {
        return;
    }
    auto const reference = HandleAccess::reference(service);
    deliver(ServiceEvent(ServiceEvent::SERVICE_MODIFIED, reference), all,
            [&properties](FilteredListener const& listener) { return matches(listener, *properties); });
    deliver(ServiceEvent(ServiceEvent::SERVICE_MODIFIED_ENDMATCH, reference), all,
            [&properties, &former](FilteredListener const& listener) {
                return !matches(listener, *properties) && matches(listener, *former);
            });
}

void Events::publishText(FrameworkEvent::Type type, std::shared_ptr<BundleRecord> const& bundle,
                         std::string const& message, std::exception_ptr const& exception)
{
    auto const listeners = m_listeners.frameworkListeners();
    if (m_log == nullptr && listeners.isEmpty()) {
        return;
    }
    auto const event = eventOf(type, HandleAccess::bundle(bundle), message, exception);
    note([&event] {
        std::ostringstream text;
        text << "framework " << event;
        return text.str();
    });
    listeners.forEach([this, &event](Listener<FrameworkEvent> const& listener) {
        if (auto const thrown = call(listener, event)) {
            note([&] {
                return "Framework listener in " + listener.bundle->name() + " threw an exception: " + reasonOf(thrown);
            });
        }
    });
}

void Events::write(std::string const& text)
{
    if (m_writing.take() == ForeignCodeLock::Outcome::wouldNeverEnd) {
        return; // the stream itself calls the framework; what comes of that is not written
    }
    ForeignCodeScope const writing(m_writing);
    *m_log << text << '\n';
    m_log->flush();
}

} // namespace cppmicroservices::detail::core
