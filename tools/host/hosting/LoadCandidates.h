#pragma once

#include "hosting/InstalledBundles.h"

#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/ServiceReference.h>

#include <inspection/Plan.h>
#include <vector>

namespace ostrel::host {

/// The services that the container's filtered load looks at: those registered by bundles that it started. Each once, by
/// id.
std::vector<cppmicroservices::ServiceReferenceU> loadCandidates(const cppmicroservices::BundleContext& context,
                                                                const InstalledBundles& bundles,
                                                                const inspection::Plan& plan);

} // namespace ostrel::host
