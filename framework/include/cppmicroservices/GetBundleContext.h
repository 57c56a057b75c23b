#pragma once

#ifndef US_BUNDLE_NAME
#error Missing preprocessor define US_BUNDLE_NAME
#endif

#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/BundleInitialization.h"

extern "C" cppmicroservices::BundleContextPrivate* US_GET_CTX_FUNC(US_BUNDLE_NAME)(void);

namespace cppmicroservices {

namespace detail {

/// The context at that address, or an invalid one when there is none any more.
US_Framework_EXPORT BundleContext MakeBundleContext(BundleContextPrivate* context);

} // namespace detail

/// The context of the bundle that the calling code belongs to, invalid while the bundle does not run. One place for
/// each loaded library: of several frameworks that run the bundle, the one that started it last is meant.
static inline BundleContext GetBundleContext()
{
    BundleContextPrivate* const context = US_GET_CTX_FUNC(US_BUNDLE_NAME)();
    return context != nullptr ? detail::MakeBundleContext(context) : BundleContext();
}

} // namespace cppmicroservices
