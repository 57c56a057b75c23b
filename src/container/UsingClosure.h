#pragma once

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/ServiceReference.h>

#include <vector>

namespace ostrel::us_container {

/// The services of `bundle` and of every bundle that uses them, directly or through others.
///
/// The bundle's own come first, then those of its users, each bundle once, always the least (by `Bundle::operator<`) of
/// those still to be visited; a bundle's services in order of registration.
///
/// @throws what `GetRegisteredServices` and `GetUsingBundles` throw
std::vector<cppmicroservices::ServiceReference<void>> servicesReachedFrom(const cppmicroservices::Bundle& bundle);

} // namespace ostrel::us_container
