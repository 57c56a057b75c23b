#pragma once

#include "platform/Export.h"
#include "platform/Utf16Path.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>

#include <vector>

namespace ostrel::platform {

OSTREL_EXPORT std::vector<cppmicroservices::Bundle> installBundles(cppmicroservices::BundleContext context,
                                                                   const Utf16Path& path);

} // namespace ostrel::platform
