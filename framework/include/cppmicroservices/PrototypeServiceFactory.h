#pragma once

#include "cppmicroservices/ServiceFactory.h"

namespace cppmicroservices {

/// A factory whose service has the scope "prototype". BundleContext::GetService() treats it as any other factory: one
/// object for each bundle.
struct PrototypeServiceFactory : public ServiceFactory {
    InterfaceMapConstPtr GetService(Bundle const& bundle, ServiceRegistrationBase const& registration) override = 0;
    void UngetService(Bundle const& bundle, ServiceRegistrationBase const& registration,
                      InterfaceMapConstPtr const& service) override = 0;
};

} // namespace cppmicroservices
