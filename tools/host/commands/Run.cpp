#include "commands/Run.h"

#include "frame/Conditions.h"
#include "frame/ConsoleCapture.h"
#include "frame/Findings.h"
#include "frame/HostOptions.h"
#include "frame/Problem.h"
#include "frame/Remarks.h"
#include "frame/ReportOutput.h"
#include "hosting/BundleDirectory.h"
#include "hosting/DiagnosticOutput.h"
#include "hosting/Guarded.h"
#include "hosting/InstalledBundles.h"
#include "hosting/LoadCandidates.h"
#include "hosting/PlanFile.h"
#include "hosting/RunSummary.h"
#include "hosting/RunningFramework.h"
#include "hosting/Start.h"
#include "hosting/UnloadProblem.h"
#include "watch/Watch.h"

#include <CLI/CLI.hpp>

#include <container/MicroServicesContainer.h>
#include <inspection/Plan.h>
#include <inspection/Remarks.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ostrel::host {

namespace {

using ostrel::us_container::FilterMap;
using ostrel::us_container::MicroServicesContainer;

struct RunOptions : HostOptions {
    bool keepGoing = false;
    bool report = false;
    bool console = false;
    std::string planFile;
};

/// The plan that is carried out. One from a file must still hold.
inspection::Plan planOf(const RunOptions& options, const cppmicroservices::BundleContext& context)
{
    if (options.planFile.empty()) {
        const FilterMap conditions = parseConditions(options.when, options.require);
        return reading([&] {
            return inspection::planDirectory(context, options.directory, conditions, {options.keepGoing, false});
        });
    }
    if (!options.when.empty() || !options.require.empty()) {
        throw Problem{ExitStatus::usage,
                      {"--plan has conditions of its own",
                       "",
                       {"--when and --require would be others"},
                       "leave them out, or make a new plan with them"}};
    }
    const inspection::Plan then = readPlanFile(options.planFile);
    inspection::Plan now = reading([&] {
        return inspection::planDirectory(context, options.directory, toFilterMap(then.conditions),
                                         {then.keepGoing || options.keepGoing, true});
    });
    requireUnchanged(options.planFile, then, now);
    return now;
}

/// One run, from the plan to the unloading.
class Runner {
public:
    Runner(const RunOptions& options, Streams& io)
        : m_options{options},
          m_io{io},
          m_remarks{io.err, options.logLevel},
          m_diagnostics{options.logLevel, io.err},
          m_watch{options.timeout},
          m_plan{planOf(options, m_framework.context())},
          m_bundles{m_framework.context()}
    {
    }

    ExitStatus run()
    {
        try {
            carryOut();
        } catch (const Problem& problem) {
            // What failed before is told all the same.
            m_failures.insert(m_failures.end(), problem.texts().begin(), problem.texts().end());
            throw problem.with(std::move(m_failures));
        }
        if (!m_failures.empty()) {
            throw Problem{ExitStatus::bundle, std::move(m_failures)};
        }
        return ExitStatus::ok;
    }

private:
    void carryOut()
    {
        m_watch.follow(m_framework.context());
        m_remarks.warnings(inspection::remarksOn(m_plan, m_options.directory));
        if (!m_plan.findings.empty() && !m_plan.keepGoing) {
            throw problemOf(m_plan.findings).noted("nothing is started; with --keep-going the rest would be");
        }
        Start start{m_plan, m_bundles, m_options.directory};
        {
            MicroServicesContainer container{m_framework.context(), start.directory()};
            m_watch.step("the bundles were being started");
            m_failures = start.run(container, m_remarks);
            m_watch.step("the services were being loaded");
            load(container);
            m_watch.step("the services were being reported");
            guarded(m_bundles, m_options.directory, "the services cannot be reported",
                    [&] { report(container, start); });
            m_watch.step("the bundles were being unloaded");
            unload(container);
        }
        m_watch.step("the framework was being stopped");
        m_framework.stop();
    }

    void load(MicroServicesContainer& container)
    {
        inspection::Vocabulary vocabulary = m_plan.vocabulary;
        try {
            guarded(m_bundles, m_options.directory, "the services cannot be loaded", [&] {
                // Who wants the report alone has no use for the count; with all conditions known, services say nothing.
                const bool isKnown = undeclaredConditions(m_plan.conditions, vocabulary).empty();
                if (!isKnown || wantsSummary()) {
                    for (const auto& service : loadCandidates(m_framework.context(), m_bundles, m_plan)) {
                        ++m_looked;
                        if (!isKnown) {
                            inspection::addDeclaredBy(vocabulary, service);
                        }
                    }
                }
                container.loadServices(toFilterMap(m_plan.conditions));
            });
        } catch (const Problem& problem) {
            if (!m_plan.keepGoing) {
                throw;
            }
            m_failures.insert(m_failures.end(), problem.texts().begin(), problem.texts().end());
        }
        m_remarks.warnings(
            inspection::remarksOnConditions(m_plan.conditions, vocabulary, inspection::Asked::bundlesAndServices));
    }

    void report(MicroServicesContainer& container, const Start& start)
    {
        if (m_options.console) {
            writeReport(m_io, printed([&] {
                            container.printAllBundles();
                            container.printAllServices();
                        }));
        }
        if (m_options.report) {
            writeReport(m_io, container.getMicroServicesString());
        }
        if (wantsSummary()) {
            const std::size_t loaded = container.listManuallyLoadedServices().size();
            m_io.out << runSummary(m_plan, m_bundles, start.leftOut(), loaded, m_looked) << std::flush;
        }
    }

    void unload(MicroServicesContainer& container)
    {
        m_diagnostics.beginUnload();
        guarded(m_bundles, m_options.directory, "the bundles cannot be unloaded", [&] { container.unload(); });
        for (auto& problem : unloadProblems(m_bundles, m_options.directory, m_diagnostics.unloadProblems())) {
            m_failures.push_back(std::move(problem));
        }
    }

    bool wantsSummary() const { return !m_options.console && !m_options.report; }

    const RunOptions& m_options;
    Streams& m_io;
    const Remarks m_remarks;
    DiagnosticOutput m_diagnostics;
    Watch m_watch; // before the framework, so that it sees its end
    RunningFramework m_framework;
    const inspection::Plan m_plan;
    const InstalledBundles m_bundles;
    std::vector<Problem::Text> m_failures;
    std::size_t m_looked = 0;
};

ExitStatus run(const RunOptions& options, Streams& io)
{
    if (options.planFile.empty()) {
        parseConditions(options.when, options.require); // before anything is looked at
    }
    bundleDirectory(options.directory);
    return Runner{options, io}.run();
}

} // namespace

Command addRun(CLI::App& program)
{
    const auto options = std::make_shared<RunOptions>();
    CLI::App* app = program.add_subcommand(
        "run", "Start the bundles of a directory that the conditions admit, load their services, say what came of it, "
               "and unload.");
    addDirectory(*app, *options);
    addConditions(*app, *options);
    app->add_option("--plan", options->planFile,
                    "Do exactly what 'plan -o FILE' wrote down, with its conditions; refused when a bundle has changed "
                    "since")
        ->type_name("FILE");
    addKeepGoing(*app, options->keepGoing);
    app->add_flag("--report", options->report,
                  "Print the container's report of bundles and services instead of the summary");
    app->add_flag("--console", options->console,
                  "Print the console reports instead: a table of all installed bundles, then the names of the loaded "
                  "services and the services of all installed bundles with their users");
    addLogLevel(*app, *options);
    addTimeout(*app, *options);
    return {app, [options](Streams& io) { return run(*options, io); }};
}

} // namespace ostrel::host
