#pragma once

#ifndef US_BUNDLE_NAME
#error Missing US_BUNDLE_NAME preprocessor define
#endif

#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/GlobalConfig.h"

namespace cppmicroservices {

/// A bundle's code that runs at its start and stop. One object is made for each start and destroyed after its stop.
struct BundleActivator {
    virtual ~BundleActivator() = default;

    /// Runs in the thread that starts the bundle; an exception makes the start fail.
    virtual void Start(BundleContext context) = 0;

    /// Runs in the thread that stops the bundle; an exception is reported after the bundle has stopped.
    virtual void Stop(BundleContext context) = 0;
};

} // namespace cppmicroservices

/// Names the activator class of the bundle, once in its sources, at global scope. The class needs a default
/// constructor.
#define CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(_activator_type)                                                      \
    extern "C" US_ABI_EXPORT cppmicroservices::BundleActivator* US_CREATE_ACTIVATOR_FUNC(US_BUNDLE_NAME)();            \
    extern "C" US_ABI_EXPORT cppmicroservices::BundleActivator* US_CREATE_ACTIVATOR_FUNC(US_BUNDLE_NAME)()             \
    {                                                                                                                  \
        return new _activator_type();                                                                                  \
    }                                                                                                                  \
    extern "C" US_ABI_EXPORT void US_DESTROY_ACTIVATOR_FUNC(US_BUNDLE_NAME)(cppmicroservices::BundleActivator *        \
                                                                            activator);                                \
    extern "C" US_ABI_EXPORT void US_DESTROY_ACTIVATOR_FUNC(US_BUNDLE_NAME)(cppmicroservices::BundleActivator *        \
                                                                            activator)                                 \
    {                                                                                                                  \
        delete activator;                                                                                              \
    }
