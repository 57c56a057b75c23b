#include "framework/Events.h"

#include "bundle/BundleRecord.h"
#include "framework/HandleAccess.h"
#include "service/ServiceRecord.h"

#include <ostream>
#include <sstream>

namespace cppmicroservices::core {

namespace {

char const* nameOf(BundleChange change)
{
    switch (change) {
    case BundleChange::installed:
        return "INSTALLED";
    case BundleChange::started:
        return "STARTED";
    case BundleChange::stopped:
        return "STOPPED";
    case BundleChange::uninstalled:
        return "UNINSTALLED";
    case BundleChange::resolved:
        return "RESOLVED";
    case BundleChange::unresolved:
        return "UNRESOLVED";
    case BundleChange::starting:
        return "STARTING";
    case BundleChange::stopping:
        return "STOPPING";
    }
    return "";
}

char const* nameOf(ServiceChange change)
{
    switch (change) {
    case ServiceChange::registered:
        return "REGISTERED";
    case ServiceChange::modified:
        return "MODIFIED";
    case ServiceChange::unregistering:
        return "UNREGISTERING";
    }
    return "";
}

} // namespace

void Events::publish(BundleChange change, BundleRecord const& bundle) noexcept
{
    if (m_log == nullptr) {
        return;
    }
    try {
        note(std::string("bundle ") + nameOf(change) + " " + bundle.text());
    } catch (...) {
        // Diagnostics never disturb the operation that they tell of.
        return;
    }
}

void Events::publish(ServiceChange change, ServiceRecord const& service) noexcept
{
    if (m_log == nullptr) {
        return;
    }
    try {
        note(std::string("service ") + nameOf(change) + " " + std::to_string(service.id()) + " of " +
             service.owner()->text());
    } catch (...) {
        return;
    }
}

void Events::publish(FrameworkEvent::Type type, std::shared_ptr<BundleRecord> const& bundle, std::string const& message,
                     std::exception_ptr const& exception) noexcept
{
    if (m_log == nullptr) {
        return;
    }
    try {
        std::ostringstream text;
        text << "framework " << FrameworkEvent(type, HandleAccess::bundle(bundle), message, exception);
        note(text.str());
    } catch (...) {
        return;
    }
}

void Events::note(std::string const& text) noexcept
{
    if (m_log == nullptr) {
        return;
    }
    try {
        std::lock_guard<std::mutex> const lock(m_mutex);
        *m_log << text << '\n';
        m_log->flush();
    } catch (...) {
        return;
    }
}

} // namespace cppmicroservices::core
