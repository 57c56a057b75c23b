#include "event/Events.h"

#include "bundle/BundleRecord.h"
#include "framework/HandleAccess.h"
#include "ldap/FilterAccess.h"
#include "service/ServiceRecord.h"
#include "value/Reason.h"

#include "cppmicroservices/Constants.h"

#include <ostream>
#include <sstream>
#include <utility>

namespace cppmicroservices::detail::core {

namespace {

bool matches(FilteredListener const& listener, detail::ldap::PropertyTable const& properties)
{
    return !listener.filter || detail::ldap::FilterAccess::matches(listener.filter, properties);
}

ServiceEvent eventOf(ServiceEvent::Type type, std::shared_ptr<ServiceRecord> const& service)
{
    auto data = std::make_shared<ReferenceData const>(ReferenceData{service, std::string()});
    return {type, HandleAccess::reference(std::move(data))};
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
    auto const missed = caughtFrom([&] {
        if (m_log != nullptr) {
            std::ostringstream text;
            text << "bundle " << type << ' ' << bundle->text();
            note(text.str());
        }
        auto const listeners = m_listeners.bundleListeners();
        if (!listeners) {
            return;
        }
        BundleEvent const event(type, HandleAccess::bundle(bundle));
        for (auto const& listener : *listeners) {
            if (listener->removed.load()) {
                continue;
            }
            if (auto const thrown = call(*listener, event)) {
                publish(FrameworkEvent::FRAMEWORK_ERROR, listener->bundle, "Bundle listener threw an exception",
                        thrown);
            }
        }
    });
    if (missed) {
        // Only memory can be short here. An event never disturbs the operation that it tells of.
        note("A bundle event was not delivered: " + reasonOf(missed));
    }
}

void Events::note(ServiceEvent::Type type, ServiceRecord const& service)
{
    if (m_log != nullptr) {
        std::ostringstream text;
        text << "service " << type << ' ' << service.id() << " of " << service.owner()->text();
        note(text.str());
    }
}

ServiceListenerCandidates Events::candidates(detail::ldap::PropertyTable const& properties)
{
    static std::vector<std::string> const none;
    auto const* const shownId = any_cast<long>(properties.find(Constants::SERVICE_ID));
    auto const* const names = any_cast<std::vector<std::string>>(properties.find(Constants::OBJECTCLASS));
    return m_listeners.serviceListeners(shownId != nullptr ? *shownId : 0, names != nullptr ? *names : none);
}

template <class Wanted>
void Events::deliver(ServiceEvent const& event, ServiceListenerCandidates const& candidates, Wanted&& wanted)
{
    candidates.forEach([this, &event, &wanted](FilteredListener const& listener) {
        if (listener.removed.load() || !wanted(listener)) {
            return;
        }
        if (auto const thrown = call(listener, event)) {
            publish(FrameworkEvent::FRAMEWORK_ERROR, listener.bundle,
                    "Service listener in " + listener.bundle->name() + " threw an exception!", thrown);
        }
    });
}

void Events::publish(ServiceEvent::Type type, std::shared_ptr<ServiceRecord> const& service,
                     Properties const& properties)
{
    auto const missed = caughtFrom([&] {
        note(type, *service);
        auto const all = candidates(*properties);
        if (!all.isEmpty()) {
            deliver(eventOf(type, service), all,
                    [&properties](FilteredListener const& listener) { return matches(listener, *properties); });
        }
    });
    if (missed) {
        note("A service event was not delivered: " + reasonOf(missed));
    }
}

void Events::publishModified(std::shared_ptr<ServiceRecord> const& service, Properties const& properties,
                             Properties const& former)
{
    auto const missed = caughtFrom([&] {
        note(ServiceEvent::SERVICE_MODIFIED, *service);
        auto const all = candidates(*properties); // the former id and classes are the same
        if (all.isEmpty()) {
            return;
        }
        deliver(eventOf(ServiceEvent::SERVICE_MODIFIED, service), all,
                [&properties](FilteredListener const& listener) { return matches(listener, *properties); });
        deliver(eventOf(ServiceEvent::SERVICE_MODIFIED_ENDMATCH, service), all,
                [&properties, &former](FilteredListener const& listener) {
                    return !matches(listener, *properties) && matches(listener, *former);
                });
    });
    if (missed) {
        note("A service event was not delivered: " + reasonOf(missed));
    }
}

void Events::publish(FrameworkEvent::Type type, std::shared_ptr<BundleRecord> const& bundle, std::string const& message,
                     std::exception_ptr const& exception)
{
    auto const missed = caughtFrom([&] {
        auto const listeners = m_listeners.frameworkListeners();
        if (m_log == nullptr && !listeners) {
            return;
        }
        FrameworkEvent const event(type, HandleAccess::bundle(bundle), message, exception);
        if (m_log != nullptr) {
            std::ostringstream text;
            text << "framework " << event;
            note(text.str());
        }
        if (!listeners) {
            return;
        }
        for (auto const& listener : *listeners) {
            if (listener->removed.load()) {
                continue;
            }
            if (auto const thrown = call(*listener, event)) {
                note("Framework listener in " + listener->bundle->name() + " threw an exception: " + reasonOf(thrown));
            }
        }
    });
    if (missed) {
        note("A framework event was not delivered: " + reasonOf(missed));
    }
}

void Events::note(std::string const& text)
{
    if (m_log == nullptr) {
        return;
    }
    (void)caughtFrom([&] {
        if (m_writing.take() == ForeignCodeLock::Outcome::wouldNeverEnd) {
            return; // the stream itself calls the framework; what comes of that is not written
        }
        ForeignCodeScope const writing(m_writing);
        *m_log << text << '\n';
        m_log->flush();
    });
}

} // namespace cppmicroservices::detail::core
