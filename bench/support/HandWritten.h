#pragma once

#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/ServiceReference.h>

#include <mutex>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace bench {

/// What a host would write without the container: the same framework calls, comparisons, map and set insertions.
///
/// It is the yardstick of the benchmarks, so it holds no more and no less than the container must do.
class HandWritten {
public:
    explicit HandWritten(cppmicroservices::BundleContext context) : m_context(std::move(context)) {}

    void load(const std::string& name);
    void loadAllOf(const std::string& location);
    void unload(const std::string& name);
    void unloadAll();
    std::string report(const std::string& location);

private:
    using Held = std::pair<cppmicroservices::ServiceReference<void>, cppmicroservices::InterfaceMapConstPtr>;

    std::recursive_mutex m_mutex;
    cppmicroservices::BundleContext m_context;
    std::set<std::string> m_names;
    std::unordered_multimap<std::string, Held> m_held;
};

} // namespace bench
