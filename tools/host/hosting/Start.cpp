#include "hosting/Start.h"

#include "frame/Findings.h"
#include "hosting/LinkDirectory.h"

#include <exception>
#include <inspection/StartFailure.h>
#include <set>
#include <utility>

namespace ostrel::host {

namespace {

using cppmicroservices::Bundle;
using inspection::Outcome;
using inspection::PlannedBundle;

/// The files whose bundles are started or refused.
std::set<std::string> goodFiles(const inspection::Plan& plan)
{
    std::set<std::string> files;
    for (const PlannedBundle& bundle : plan.bundles) {
        if (bundle.outcome == Outcome::start || bundle.outcome == Outcome::skip) {
            files.insert(bundle.file);
        }
    }
    return files;
}

Problem::Text problemOf(const Bundle& bundle, const std::string& message)
{
    const inspection::StartFailure failure = inspection::startFailure(message);
    return {"the bundle \"" + bundle.GetSymbolicName() + "\" did not start: " + failure.what,
            bundle.GetLocation(),
            {failure.why},
            failure.remedy,
            failure.code};
}

} // namespace

Start::Start(const inspection::Plan& plan, const InstalledBundles& bundles, const std::string& directory)
    : m_plan{plan},
      m_bundles{bundles},
      m_shownDirectory{directory},
      m_links{plan.keepGoing ? std::make_unique<LinkDirectory>(goodFiles(plan)) : nullptr},
      m_directory{m_links ? m_links->path() : platform::Utf16Path{platform::toUtf16(directory)}}
{
    if (!plan.findings.empty() && !plan.keepGoing) {
        throw host::problemOf(plan.findings);
    }
}

Start::~Start() = default;

std::vector<Problem::Text> Start::run(us_container::MicroServicesContainer& container, const Remarks& remarks)
{
    std::vector<Problem::Text> failures;
    if (!m_plan.findings.empty()) {
        failures = host::problemOf(m_plan.findings).texts();
        remarks.note("goes on without what fails");
    }
    const auto conditions = toFilterMap(m_plan.conditions);
    for (;;) {
        try {
            container.startBundles(conditions);
            return failures;
        } catch (const std::exception& error) {
            failures.push_back(leaveOut(error.what(), remarks));
        }
    }
}

Problem::Text Start::leaveOut(const std::string& message, const Remarks& remarks)
{
    const Bundle culprit = m_bundles.culprit(message);
    Problem::Text text =
        culprit
            ? problemOf(culprit, message)
            : Problem::Text{
                  "the bundles cannot be started", m_shownDirectory, {message}, "check the bundles of the directory"};
    const Bundle tried = failed(message);
    if (!m_links || !tried || !m_links->remove(tried.GetLocation())) {
        throw Problem{ExitStatus::bundle, std::move(text)};
    }
    remarks.note("goes on without " + quoted(tried.GetLocation()));
    m_leftOut.emplace(tried.GetLocation(), text);
    return text;
}

Bundle Start::failed(const std::string& message) const
{
    // The container starts in this order, and ends at what fails. A bundle that fails because of another one that it
    // started itself is named too, and it is the one that must go.
    Bundle first;
    for (const PlannedBundle& planned : m_plan.bundles) {
        Bundle bundle = planned.outcome == Outcome::start ? m_bundles.of(planned) : Bundle{};
        if (!bundle || bundle.GetState() == Bundle::STATE_ACTIVE || (m_links && !m_links->has(bundle.GetLocation()))) {
            continue;
        }
        if (message.find(bundle.GetLocation()) != std::string::npos) {
            return bundle;
        }
        first = first ? first : bundle;
    }
    return first;
}

} // namespace ostrel::host
