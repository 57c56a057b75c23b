#pragma once

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>

#include <inspection/Plan.h>
#include <map>
#include <string>
#include <utility>

namespace ostrel::host {

/// The bundles that are installed in a framework when this is made, the framework's own left out.
class InstalledBundles {
public:
    explicit InstalledBundles(const cppmicroservices::BundleContext& context);

    /// The bundle that a plan is about; an invalid one where it is not installed. A framework has no two bundles with
    /// the same symbolic name and version.
    cppmicroservices::Bundle of(const inspection::PlannedBundle& planned) const;

    /// The bundle that a text of the framework is about; an invalid one when it names none. Of several it is the one
    /// that is named last: that of the innermost failure.
    cppmicroservices::Bundle culprit(const std::string& message) const;

    /// The file of that bundle, else `otherwise`.
    std::string culpritFile(const std::string& message, const std::string& otherwise) const;

private:
    using Identity = std::pair<std::string, std::string>;

    std::map<Identity, cppmicroservices::Bundle> m_bundles; // by symbolic name and version
};

} // namespace ostrel::host
