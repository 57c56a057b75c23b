#pragma once

#include "library/ActivatorSymbols.h"
#include "library/SharedLibrary.h"

#include <memory>
#include <string>

namespace cppmicroservices {

class BundleContextPrivate;
struct BundleActivator;

namespace detail::core {

class BundleRecord;

/// A bundle's library and its activator object. Runs foreign code; only for the holder of the bundle's lifecycle lock.
class Activation {
public:
    /// Loads the library unless that was done before.
    ///
    /// @throws SharedLibraryException with the dynamic loader's message
    /// @throws std::runtime_error when the library was built for the other framework
    void load(BundleRecord const& bundle, int options, std::shared_ptr<BundleRecord> const& origin);

    /// Sets the library's context slot, makes the activator and runs its Start.
    ///
    /// @throws std::runtime_error when the library has no activator for the bundle
    /// @throws whatever the activator throws
    void start(BundleRecord const& bundle, std::shared_ptr<BundleContextPrivate> const& context);

    /// Runs the activator's Stop, if there is one.
    ///
    /// @throws whatever the activator throws
    void stop(std::shared_ptr<BundleContextPrivate> const& context);

    /// Destroys the activator.
    ///
    /// @throws whatever the library's function for it throws, once all is done
    void destroy();

    /// After a failed start: puts the activator aside. It lives until the next start or the
    /// framework's stop, as other objects that it made may still point to it.
    void putAside();

    /// @throws as above
    void destroyPutAside();

    /// Empties the library's context slot: once the services of the run are gone, as their code may still ask for it.
    void emptySlot() noexcept;

private:
    SharedLibrary m_library;
    ActivatorSymbols m_symbols;
    BundleActivator* m_activator = nullptr;
    BundleActivator* m_putAside = nullptr;
};

} // namespace detail::core

} // namespace cppmicroservices
