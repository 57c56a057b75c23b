#pragma once

#include "container/MicroServicesContainer.h"
#include "integration/filtering/FilteringFixture.h"
#include "integration/support/BundleArchive.h"
#include "support/BundleScript.h"
#include "support/Host.h"
#include "support/RecordCapture.h"

#include <cppmicroservices/Bundle.h>

#include <string>

namespace ostrel::test {

inline const FilterMap nothingAsked;
inline const FilterMap day{{"mode", optional("day")}};
inline const FilterMap dayRequired{{"mode", required("day")}};

inline const std::string inDayMode = R"([{"mode": "day"}])";
inline const std::string inNightMode = R"([{"mode": "night"}])";

inline LogRecord decision(const std::string& text)
{
    return {0x8, text};
}
inline LogRecord starting(const std::string& name)
{
    return decision("Starting bundle: " + name);
}
inline LogRecord skippingBundle(const std::string& name)
{
    return decision("Skipping bundle due to filtering: " + name);
}
inline LogRecord emptyMatches(const std::string& name)
{
    return decision(name + ": empty filter does match");
}

class StartBundlesFiltered : public HostFixture {
protected:
    /// Adds an archive with one component; the file is called like the bundle.
    std::string addComponent(const std::string& symbolicName, const std::string& componentName,
                             const std::string& filterDeclaration = "")
    {
        return addArchive(host, symbolicName + ".zip", {componentWith(symbolicName, componentName, filterDeclaration)});
    }

    bool isActive(const std::string& file) const { return stateOf(file) == cppmicroservices::Bundle::STATE_ACTIVE; }
    cppmicroservices::Bundle::State stateOf(const std::string& file) const { return host.bundleIn(file).GetState(); }

    RecordCapture log;
    BundleScript script{host.context()};
    ostrel::us_container::MicroServicesContainer container{host.context(), host.bundleDirectory()};
};

} // namespace ostrel::test
