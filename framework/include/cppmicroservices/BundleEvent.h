#pragma once

#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/FrameworkExport.h"

#include <cstdint>
#include <iostream> // sources written for this header count on it

namespace cppmicroservices {

/// A change of a bundle's state, as bundle listeners get it. The bundle is in the new state already.
class US_Framework_EXPORT BundleEvent {
public:
    enum Type : std::uint32_t {
        BUNDLE_INSTALLED = 0x00000001,
        BUNDLE_STARTED = 0x00000002,
        BUNDLE_STOPPED = 0x00000004,
        BUNDLE_UPDATED = 0x00000008, ///< never sent
        BUNDLE_UNINSTALLED = 0x00000010,
        BUNDLE_RESOLVED = 0x00000020,
        BUNDLE_UNRESOLVED = 0x00000040,
        BUNDLE_STARTING = 0x00000080,
        BUNDLE_STOPPING = 0x00000100,
        BUNDLE_LAZY_ACTIVATION = 0x00000200, ///< never sent
    };

    /// An event that is false: of type BUNDLE_UNINSTALLED and of no bundle.
    BundleEvent();

    /// @throws std::invalid_argument "invalid bundle" for a handle on none
    BundleEvent(Type type, Bundle const& bundle);

    /// @throws std::invalid_argument as above, and "invalid origin"
    BundleEvent(Type type, Bundle const& bundle, Bundle const& origin);

    explicit operator bool() const;

    Bundle GetBundle() const;
    Type GetType() const;

    /// The bundle itself for all events that the framework sends.
    Bundle GetOrigin() const;

    /// Equal when type, bundle and origin are, or when both are false.
    bool operator==(BundleEvent const& evt) const;

private:
    // Here and not behind a pointer, as the end of a bundle has to be told when memory is short as well.
    Type m_type = BUNDLE_UNINSTALLED;
    Bundle m_bundle; // false in an event that is false
    Bundle m_origin;
};

US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, BundleEvent::Type eventType);
US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, BundleEvent const& event);

} // namespace cppmicroservices
