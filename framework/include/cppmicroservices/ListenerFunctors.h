#pragma once

#include "cppmicroservices/FrameworkExport.h"
#include "cppmicroservices/GlobalConfig.h"

#include <cstddef>
#include <cstring>
#include <functional>

namespace cppmicroservices {

class ServiceEvent;
class BundleEvent;
class FrameworkEvent;

/// Called in the thread that causes the event, with no lock of the framework held. What a listener throws does not
/// disturb that thread. Several threads may call one listener at a time.
using ServiceListener = std::function<void(ServiceEvent const&)>;
using BundleListener = std::function<void(BundleEvent const&)>;
using FrameworkListener = std::function<void(FrameworkEvent const&)>;

// The following three are kept for older sources; a lambda says the same.

template <class R>
US_DEPRECATED ServiceListener ServiceListenerMemberFunctor(R* receiver, void (R::*callback)(ServiceEvent const&))
{
    return std::bind(callback, receiver, std::placeholders::_1);
}

template <class R>
US_DEPRECATED BundleListener BundleListenerMemberFunctor(R* receiver, void (R::*callback)(BundleEvent const&))
{
    return std::bind(callback, receiver, std::placeholders::_1);
}

template <class R>
US_DEPRECATED FrameworkListener BindFrameworkListenerToFunctor(R* receiver, void (R::*callback)(FrameworkEvent const&))
{
    return std::bind(callback, receiver, std::placeholders::_1);
}

} // namespace cppmicroservices

// By the address of a plain function; all other callables hash alike, as nothing tells them apart.
// clang-format off
US_HASH_FUNCTION_BEGIN(cppmicroservices::ServiceListener)
    using Function = void (*)(cppmicroservices::ServiceEvent const&);
    Function const* const function = arg.target<Function>();
    return hash<Function>()(function != nullptr ? *function : nullptr);
US_HASH_FUNCTION_END
// clang-format on
