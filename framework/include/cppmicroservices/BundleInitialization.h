#pragma once

#ifndef US_BUNDLE_NAME
#error Missing US_BUNDLE_NAME preprocessor define
#endif

#include "cppmicroservices/GlobalConfig.h"

#include <atomic>
#include <functional>

namespace cppmicroservices {

class BundleContextPrivate;

/// What CPPMICROSERVICES_INITIALIZE_BUNDLE defines for the framework.
using SetBundleContextFn = std::function<void(BundleContextPrivate*)>;

} // namespace cppmicroservices

/// The place in a bundle's library from which GetBundleContext() reads, and the function by which the framework sets
/// it. Needed in exactly one source file of a library that calls GetBundleContext().
#define CPPMICROSERVICES_INITIALIZE_BUNDLE                                                                             \
    std::atomic<cppmicroservices::BundleContextPrivate*> US_CTX_INS(US_BUNDLE_NAME){};                                 \
    extern "C" cppmicroservices::BundleContextPrivate* US_GET_CTX_FUNC(US_BUNDLE_NAME)(void);                          \
    extern "C" cppmicroservices::BundleContextPrivate* US_GET_CTX_FUNC(US_BUNDLE_NAME)(void)                           \
    {                                                                                                                  \
        return US_CTX_INS(US_BUNDLE_NAME).load();                                                                      \
    }                                                                                                                  \
    extern "C" US_ABI_EXPORT void US_SET_CTX_FUNC(US_BUNDLE_NAME)(cppmicroservices::BundleContextPrivate * context);   \
    extern "C" US_ABI_EXPORT void US_SET_CTX_FUNC(US_BUNDLE_NAME)(cppmicroservices::BundleContextPrivate * context)    \
    {                                                                                                                  \
        US_CTX_INS(US_BUNDLE_NAME).store(context);                                                                     \
    }
