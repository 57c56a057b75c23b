#pragma once

#include "library/SharedLibrary.h"

#include <string>

namespace cppmicroservices {

class BundleContextPrivate;
struct BundleActivator;

namespace detail::core {

/// The functions that the macros for bundles make; null where the library has none.
struct ActivatorSymbols {
    using Create = BundleActivator* (*)();
    using Destroy = void (*)(BundleActivator*);
    using SetContext = void (*)(BundleContextPrivate*);

    Create create = nullptr;
    Destroy destroy = nullptr;
    SetContext setContext = nullptr;

    static ActivatorSymbols of(SharedLibrary const& library, std::string const& bundleName);
};

} // namespace detail::core

} // namespace cppmicroservices
