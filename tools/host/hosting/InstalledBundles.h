#pragma once

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>

#include <inspection/Plan.h>
#include <string>
#include <utility>

namespace ostrel::host {

/// The bundles of a framework, as plans and the texts of failures name them.
class InstalledBundles {
public:
    explicit InstalledBundles(cppmicroservices::BundleContext context) : m_context{std::move(context)} {}

    /// The bundle that a plan made in this framework is about; an invalid one where it is not installed.
    cppmicroservices::Bundle of(const inspection::PlannedBundle& planned) const;

    /// The bundle that a text of the framework is about; an invalid one when it names none. Of several it is the one
    /// that is named last: that of the innermost failure.
    cppmicroservices::Bundle culprit(const std::string& message) const;

    /// The file of that bundle, else `otherwise`.
    std::string culpritFile(const std::string& message, const std::string& otherwise) const;

private:
    cppmicroservices::BundleContext m_context;
};

} // namespace ostrel::host
