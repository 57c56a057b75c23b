#pragma once

#include "frame/Problem.h"
#include "frame/Remarks.h"
#include "hosting/InstalledBundles.h"
#include <platform/Utf16Path.h>

#include <cppmicroservices/Bundle.h>

#include <container/MicroServicesContainer.h>
#include <inspection/Plan.h>
#include <map>
#include <memory>
#include <vector>

namespace ostrel::host {

class LinkDirectory;

/// Starts what a plan starts, through the container.
class Start {
public:
    /// All are referred to for as long as this lives.
    /// @param directory  as it was given
    /// @throws Problem (bundle) with all that fails, if the plan is not to keep going
    Start(const inspection::Plan& plan, const InstalledBundles& bundles, const std::string& directory);
    ~Start();

    /// Of which the container is to be: with a plan to keep going one of links to the good files.
    const platform::Utf16Path& directory() const { return m_directory; }

    /// Starts the bundles. Where a start throws and the plan is to keep going, that file is left out and the rest is
    /// started.
    ///
    /// @return what failed, what the plan foresaw included
    /// @throws Problem (bundle) for the first failure, if the plan is not to keep going
    std::vector<Problem::Text> run(us_container::MicroServicesContainer& container, const Remarks& remarks);

    /// Why what the container tried to start was left out, by file. That may be about a bundle that it started itself.
    const std::map<std::string, Problem::Text>& leftOut() const { return m_leftOut; }

private:
    Problem::Text leaveOut(const std::string& message, const Remarks& remarks);
    cppmicroservices::Bundle failed(const std::string& message) const;

    const inspection::Plan& m_plan;
    const InstalledBundles& m_bundles;
    const std::string& m_shownDirectory;
    std::unique_ptr<LinkDirectory> m_links;
    platform::Utf16Path m_directory;
    std::map<std::string, Problem::Text> m_leftOut;
};

} // namespace ostrel::host
