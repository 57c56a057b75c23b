#include "cppmicroservices/detail/ServiceTracking.h"

#include "tracker/TrackerFailure.h"
#include "value/Reason.h"

#include "cppmicroservices/Constants.h"
#include "cppmicroservices/LDAPFilter.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

namespace cppmicroservices::detail {

namespace {

using Clock = std::chrono::steady_clock;

// How soon a wait without end notices that its bundle has stopped.
constexpr auto lookEvery = std::chrono::milliseconds(100);

// Longer is for ever: the clock does not reach that far.
constexpr double longestSeconds = 3.0e9;

/// A filter that a value matches literally.
std::string exactly(std::string const& key, std::string const& value)
{
    std::string filter = "(" + key + "=";
    for (char const c : value) {
        if (c == '(' || c == ')' || c == '*' || c == '\\') {
            filter += '\\';
        }
        filter += c;
    }
    return filter + ")";
}

std::string idFilter(ServiceReferenceBase const& reference)
{
    if (reference == ServiceReferenceU()) {
        throw std::invalid_argument("ServiceTracker: the service reference is default constructed and names no "
                                    "service; check it before making the tracker");
    }
    return exactly(Constants::SERVICE_ID, reference.GetProperty(Constants::SERVICE_ID).ToString());
}

} // namespace

ServiceTracking::ServiceTracking(BundleContext context, ServiceReferenceBase const& reference)
    : m_context(std::move(context)), m_filter(idFilter(reference)), m_reference(reference)
{
}

ServiceTracking::ServiceTracking(BundleContext context, std::string const& className)
    : m_context(std::move(context)), m_filter(exactly(Constants::OBJECTCLASS, className)), m_className(className)
{
}

ServiceTracking::ServiceTracking(BundleContext context, LDAPFilter const& filter)
    : m_context(std::move(context)), m_filter(filter.ToString())
{
    if (!m_context) {
        throw std::invalid_argument("The bundle context cannot be null.");
    }
}

std::vector<ServiceReferenceU> ServiceTracking::present() const
{
    if (m_reference) {
        return {*m_reference};
    }
    BundleContext context = m_context;
    if (m_className) {
        // An empty name would be one for all services there.
        return m_className->empty() ? std::vector<ServiceReferenceU>() : context.GetServiceReferences(*m_className);
    }
    return context.GetServiceReferences(std::string(), m_filter);
}

void ServiceTracking::open(std::unique_ptr<TrackedServices::Customizer> customizer, Narrow narrow)
{
    auto const items = std::make_shared<TrackedServices>(std::move(customizer));
    std::shared_ptr<TrackedServices> former; // goes after the lock, with its customizer
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        if (m_items && !m_items->isClosed()) {
            return;
        }
        former = std::exchange(m_items, items);
    }
    std::vector<ServiceReferenceBase> initial;
    try {
        BundleContext context = m_context;
        auto token = context.AddServiceListener(
            [items, narrow](ServiceEvent const& event) {
                ServiceReferenceU const service = event.GetServiceReference();
                switch (event.GetType()) {
                case ServiceEvent::SERVICE_REGISTERED:
                case ServiceEvent::SERVICE_MODIFIED:
                    if (auto const wanted = narrow(service)) {
                        items->onCame(wanted, event);
                    }
                    break;
                case ServiceEvent::SERVICE_UNREGISTERING:
                case ServiceEvent::SERVICE_MODIFIED_ENDMATCH:
                    items->onWent(service, event);
                    break;
                }
            },
            m_filter);
        if (!items->keepListener(token)) {
            removeListener(std::move(token)); // closed by another thread in the meantime
            return;
        }
        for (auto const& service : present()) {
            if (auto const wanted = narrow(service)) {
                initial.push_back(wanted);
            }
        }
    } catch (...) {
        items->close();
        removeListener(items->takeListener());
        throw;
    }
    try {
        items->addInitial(std::move(initial));
    } catch (std::bad_alloc const&) {
        closeQuietly(); // so that it can be opened once more
        throw;
    }
}

void ServiceTracking::close()
{
    auto const open = items();
    if (!open || !open->close()) {
        return;
    }
    removeListener(open->takeListener());
    open->awaitListener();
    open->removeAll(ServiceEvent());
}

void ServiceTracking::closeQuietly() noexcept
{
    if (auto const thrown = core::caughtFrom([this] { close(); })) {
        core::reportTrackerFailure(m_context, "Service tracker customizer threw an exception", thrown);
    }
}

void ServiceTracking::removeListener(ListenerToken token) const
{
    try {
        BundleContext context = m_context;
        context.RemoveListener(std::move(token));
    } catch (std::exception const&) {
        // The bundle has stopped, and its listeners with it. Nothing else goes wrong here.
    }
}

std::shared_ptr<TrackedServices> ServiceTracking::items() const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_items;
}

ServiceTracking::Object ServiceTracking::waitFor(std::function<Object()> const& get, double seconds) const
{
    if (seconds < 0) {
        throw std::invalid_argument("negative timeout");
    }
    std::optional<Clock::time_point> until;
    if (seconds > 0 && seconds < longestSeconds) {
        until = Clock::now() + std::chrono::ceil<Clock::duration>(std::chrono::duration<double>(seconds));
    }
    bool waited = false;
    for (;;) {
        auto const seen = items();
        auto const since = seen ? seen->changes() : 0;
        if (auto object = get()) {
            return object;
        }
        if (!seen) {
            return nullptr;
        }
        if (!waited && !m_context) {
            throw std::logic_error("The bundle context cannot be null.");
        }
        if (seen->isClosed()) {
            if (seen == items()) {
                return nullptr;
            }
            continue; // opened again
        }
        waited = true;
        if (waitForChange(seen, since, until) == Wake::over) {
            return nullptr;
        }
    }
}

ServiceTracking::Wake ServiceTracking::waitForChange(std::shared_ptr<TrackedServices> const& items, std::uint64_t since,
                                                     std::optional<Clock::time_point> until) const
{
    for (;;) {
        auto const now = Clock::now();
        if (until && *until <= now) {
            return Wake::over;
        }
        if (items->awaitChange(since, until ? *until : now + lookEvery)) {
            return Wake::changed;
        }
        if (!until && !m_context) {
            throw std::logic_error("The bundle context became null.");
        }
    }
}

} // namespace cppmicroservices::detail
