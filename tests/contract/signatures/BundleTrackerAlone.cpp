// What a source gets that includes this header and no other.
#include <cppmicroservices/BundleTracker.h>

bool isAboutTheFramework(cppmicroservices::BundleTracker<>& tracker)
{
    for (auto const& bundle : tracker.GetBundles()) {
        if (bundle.GetLocation() == cppmicroservices::Constants::SYSTEM_BUNDLE_LOCATION &&
            bundle.GetBundleId() < std::numeric_limits<long>::max()) {
            return bundle.GetBundleContext() == cppmicroservices::BundleContext();
        }
    }
    return false;
}
