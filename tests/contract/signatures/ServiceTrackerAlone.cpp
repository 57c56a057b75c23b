// What a source gets that includes this header and no other.
#include <cppmicroservices/ServiceTracker.h>

static_assert(std::numeric_limits<int>::is_integer);

void writeWhatIsTracked(cppmicroservices::BundleContext const& context)
{
    cppmicroservices::ServiceTracker<void> tracker(
        context, cppmicroservices::LDAPFilter("(" + cppmicroservices::Constants::SERVICE_ID + "=*)"));
    tracker.Open();
    std::map<std::string, long> found;
    for (auto const& service : tracker.GetServiceReferences()) {
        found[service.GetBundle().GetSymbolicName()] = service.GetBundle().GetBundleId();
    }
    std::cout << found.size() << ' ' << context.GetBundle().GetVersion() << '\n';
}
