#pragma once

#include "cppmicroservices/ServiceInterface.h"
#include "cppmicroservices/ServiceRegistration.h"

namespace cppmicroservices {

class Bundle;

/// Registered in place of a service object, makes one object for each bundle that uses the service.
///
/// May be called by several threads at once, but by one at a time for one bundle; no framework lock is held.
class ServiceFactory {
public:
    virtual ~ServiceFactory() = default;

    /// Makes the object for a bundle, at its first use. It is kept while the bundle uses it.
    virtual InterfaceMapConstPtr GetService(Bundle const& bundle, ServiceRegistrationBase const& registration) = 0;

    /// Takes an object back: the bundle's last use has ended, or the service is being unregistered.
    virtual void UngetService(Bundle const& bundle, ServiceRegistrationBase const& registration,
                              InterfaceMapConstPtr const& service) = 0;
};

} // namespace cppmicroservices
