// The listeners of a bundle's context.

#include "bundle/ContextAccess.h"
#include "event/Events.h"
#include "framework/HandleAccess.h"

#include "cppmicroservices/BundleContext.h"

namespace cppmicroservices {

namespace {

using detail::core::access;
using detail::core::HandleAccess;

detail::core::ListenerRegistry& listenersOf(detail::core::ContextAccess const& own)
{
    return own.core->events().listeners();
}

/// Adds the listener that the arguments describe.
template <class... What>
ListenerToken addTo(std::shared_ptr<BundleContextPrivate> const& context, What const&... what)
{
    auto const own = access(context);
    return HandleAccess::token(listenersOf(own).add(*own.context, what...));
}

template <class... Which>
void removeFrom(std::shared_ptr<BundleContextPrivate> const& context, Which const&... which)
{
    auto const own = access(context);
    listenersOf(own).remove(*own.context, which...);
}

} // namespace

ListenerToken BundleContext::AddServiceListener(ServiceListener const& listener, std::string const& filter)
{
    return AddServiceListener(listener, nullptr, filter);
}

ListenerToken BundleContext::AddServiceListener(ServiceListener const& listener, void* receiver,
                                                std::string const& filter)
{
    return addTo(m_context, listener, receiver, filter);
}

void BundleContext::RemoveServiceListener(ServiceListener const& listener)
{
    RemoveServiceListener(listener, nullptr);
}

void BundleContext::RemoveServiceListener(ServiceListener const& listener, void* receiver)
{
    removeFrom(m_context, listener, receiver);
}

ListenerToken BundleContext::AddBundleListener(BundleListener const& listener)
{
    return AddBundleListener(listener, nullptr);
}

ListenerToken BundleContext::AddBundleListener(BundleListener const& listener, void* receiver)
{
    return addTo(m_context, listener, receiver);
}

void BundleContext::RemoveBundleListener(BundleListener const& listener)
{
    RemoveBundleListener(listener, nullptr);
}

void BundleContext::RemoveBundleListener(BundleListener const& listener, void* receiver)
{
    removeFrom(m_context, listener, receiver);
}

ListenerToken BundleContext::AddFrameworkListener(FrameworkListener const& listener)
{
    return AddFrameworkListener(listener, nullptr);
}

ListenerToken BundleContext::AddFrameworkListener(FrameworkListener const& listener, void* receiver)
{
    return addTo(m_context, listener, receiver);
}

void BundleContext::RemoveFrameworkListener(FrameworkListener const& listener)
{
    RemoveFrameworkListener(listener, nullptr);
}

void BundleContext::RemoveFrameworkListener(FrameworkListener const& listener, void* receiver)
{
    removeFrom(m_context, listener, receiver);
}

void BundleContext::RemoveListener(ListenerToken token)
{
    removeFrom(m_context, HandleAccess::id(token));
}

} // namespace cppmicroservices
