#include "inspection/Plan.h"

#include "inspection/files/Sha256.h"
#include "inspection/files/Survey.h"
#include "inspection/start/Subject.h"

#include <cppmicroservices/BundleVersion.h>

#include <algorithm>
#include <utility>

namespace ostrel::inspection {
namespace {

using cppmicroservices::Bundle;
using us_container::FilterMap;

Finding noComponentName(const SurveyedFile& file, const Subject& subject)
{
    return {Code::noComponentName,
            file.path,
            subject.bundle,
            "the bundle \"" + subject.bundle + "\" has no component name",
            R"(its manifest has no "zq": {"component": {"name": ...}}, by which the container knows a bundle)",
            "add it to the manifest, and build the bundle again"};
}

PlannedBundle failing(const Finding& finding)
{
    PlannedBundle planned;
    planned.file = finding.file;
    planned.reason = toText(finding.code);
    planned.text = "fails: " + finding.what + ": " + finding.why;
    return planned;
}

class Planner {
public:
    Planner(const FilterMap& filterMap, Plan& plan) : m_filterMap{filterMap}, m_plan{plan} {}

    void add(SurveyedFile& file)
    {
        if (file.fault) {
            PlannedBundle planned = failing(*file.fault);
            planned.symbolicName = std::move(file.symbolicName);
            planned.version = std::move(file.version);
            planned.componentName = std::move(file.componentName);
            m_plan.bundles.push_back(std::move(planned));
            m_plan.findings.push_back(std::move(*file.fault));
        } else if (!file.passedOver.empty()) {
            m_plan.passedOver.push_back({file.path, std::move(file.passedOver)});
        } else {
            addBundles(file);
        }
    }

private:
    void addBundles(const SurveyedFile& file)
    {
        const std::size_t first = m_plan.bundles.size();
        bool fails = false;
        for (const Bundle& bundle : file.bundles) {
            const Subject subject = subjectOf(bundle, m_filterMap, Depth::decision, m_plan.vocabulary);
            m_plan.bundles.push_back(planned(file, subject, bundle));
            fails = fails || !subject.admitted;
        }
        if (fails && m_plan.keepGoing) {
            // The container starts what lies in a file together or not at all.
            for (std::size_t i = first; i < m_plan.bundles.size(); ++i) {
                leaveOut(m_plan.bundles[i], "another bundle of its file fails");
            }
        }
    }

    PlannedBundle planned(const SurveyedFile& file, const Subject& subject, const Bundle& bundle)
    {
        PlannedBundle planned;
        if (subject.admitted) {
            planned.file = file.path;
            planned.componentName = subject.name;
            planned.outcome = *subject.admitted ? Outcome::start : Outcome::skip;
            planned.reason = toText(subject.reason);
            planned.text = subject.text;
        } else {
            m_plan.findings.push_back(noComponentName(file, subject));
            planned = failing(m_plan.findings.back());
        }
        planned.id = bundle.GetBundleId();
        planned.symbolicName = subject.bundle;
        planned.version = bundle.GetVersion().ToString();
        return planned;
    }

public:
    static void leaveOut(PlannedBundle& bundle, const std::string& why)
    {
        if (bundle.outcome != Outcome::fail) {
            bundle.outcome = Outcome::notReached;
            bundle.text = "is not reached: " + why;
        }
    }

private:
    const FilterMap& m_filterMap;
    Plan& m_plan;
};

void addHashes(std::vector<PlannedBundle>& bundles)
{
    const PlannedBundle* last = nullptr;
    for (PlannedBundle& bundle : bundles) {
        // The bundles of one file stand side by side.
        bundle.sha256 = last != nullptr && last->file == bundle.file ? last->sha256 : sha256Of(bundle.file);
        last = &bundle;
    }
}

} // namespace

std::string_view toText(Outcome outcome)
{
    switch (outcome) {
    case Outcome::start:
        return "start";
    case Outcome::skip:
        return "skip";
    case Outcome::fail:
        return "fail";
    case Outcome::notReached:
        break;
    }
    return "not-reached";
}

Plan planDirectory(const cppmicroservices::BundleContext& context, const std::string& directory,
                   const FilterMap& filterMap, const PlanOptions& options)
{
    Plan plan;
    plan.conditions = toConditions(filterMap);
    plan.keepGoing = options.keepGoing;
    Survey surveyed = survey(context, directory);
    plan.hasFolders = surveyed.hasFolders;
    Planner planner{filterMap, plan};
    for (SurveyedFile& file : surveyed.files) {
        planner.add(file);
    }
    const auto failed = std::find_if(plan.bundles.begin(), plan.bundles.end(),
                                     [](const PlannedBundle& bundle) { return bundle.outcome == Outcome::fail; });
    if (failed != plan.bundles.end() && !options.keepGoing) {
        const std::string why = '"' + failed->file + "\" fails";
        for (PlannedBundle& bundle : plan.bundles) {
            Planner::leaveOut(bundle, why);
        }
    }
    if (options.hashes) {
        addHashes(plan.bundles);
    }
    return plan;
}

PlanSummary summaryOf(const Plan& plan)
{
    PlanSummary summary;
    for (const PlannedBundle& bundle : plan.bundles) {
        switch (bundle.outcome) {
        case Outcome::start:
            ++summary.start;
            break;
        case Outcome::skip:
            ++summary.skip;
            break;
        case Outcome::fail:
            ++summary.fail;
            break;
        case Outcome::notReached:
            ++summary.notReached;
            break;
        }
        ++summary.reasons[bundle.reason];
    }
    return summary;
}

} // namespace ostrel::inspection
