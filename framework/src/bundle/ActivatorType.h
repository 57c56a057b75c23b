#pragma once

// The header for bundle authors insists on a bundle's name, which the framework itself does not have.
#ifndef US_BUNDLE_NAME
#define US_BUNDLE_NAME system_bundle
#endif
#include "cppmicroservices/BundleActivator.h"
