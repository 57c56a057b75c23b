#include "commands/Explain.h"

#include "commands/NamedSubjects.h"
#include "frame/Conditions.h"
#include "frame/Findings.h"
#include "frame/HostOptions.h"
#include "frame/Remarks.h"
#include "frame/Tool.h"
#include "hosting/BundleDirectory.h"
#include "hosting/DiagnosticOutput.h"
#include "hosting/Guarded.h"
#include "hosting/InstalledBundles.h"
#include "hosting/LoadCandidates.h"
#include "hosting/RunningFramework.h"
#include "hosting/Start.h"
#include "watch/Watch.h"

#include <CLI/CLI.hpp>

#include <container/MicroServicesContainer.h>
#include <inspection/Explanation.h>
#include <inspection/Plan.h>
#include <inspection/Remarks.h>
#include <memory>

namespace ostrel::host {

namespace {

struct ExplainOptions : HostOptions {
    std::vector<std::string> names;
    bool services = false;
    bool json = false;
};

/// Does what a run does up to the load, and explains the services that the load would look at.
///
/// @throws Problem (bundle) when the run would end before
std::vector<inspection::Subject> explainServices(const ExplainOptions& options,
                                                 const us_container::FilterMap& conditions, RunningFramework& framework,
                                                 inspection::Vocabulary& vocabulary, Streams& io)
{
    const inspection::Plan plan =
        reading([&] { return inspection::planDirectory(framework.context(), options.directory, conditions, {}); });
    const InstalledBundles bundles{framework.context()};
    Start start{plan, bundles, options.directory};
    DiagnosticOutput diagnostics{options.logLevel, io.err};
    Watch watch{options.timeout};
    watch.follow(framework.context());
    watch.step("the bundles were being started");
    us_container::MicroServicesContainer container{framework.context(), start.directory()};
    start.run(container, Remarks{io.err, options.logLevel});
    std::vector<inspection::Subject> subjects;
    watch.step("the services were being explained");
    guarded(bundles, options.directory, "the services cannot be explained", [&] {
        for (const auto& service : loadCandidates(framework.context(), bundles, plan)) {
            subjects.push_back(inspection::explainService(service, conditions));
            inspection::addDeclaredBy(vocabulary, service);
        }
    });
    watch.step("the bundles were being unloaded");
    guarded(bundles, options.directory, "the bundles cannot be unloaded", [&] { container.unload(); });
    return subjects;
}

ExitStatus run(const ExplainOptions& options, Streams& io)
{
    const auto conditions = parseConditions(options.when, options.require);
    bundleDirectory(options.directory);
    RunningFramework framework;
    inspection::Explanation explanation =
        reading([&] { return inspection::explainDirectory(framework.context(), options.directory, conditions); });
    const Remarks remarks{io.err, options.logLevel};
    if (options.names.empty()) {
        remarks.warnings(inspection::remarksOn(explanation, options.directory));
    }
    if (options.services && explanation.findings.empty()) {
        const auto services = explainServices(options, conditions, framework, explanation.vocabulary, io);
        explanation.subjects.insert(explanation.subjects.end(), services.begin(), services.end());
    }
    if (!options.names.empty()) {
        keepNamed(explanation, options.names);
    }
    remarks.warnings(inspection::remarksOnConditions(explanation.conditions, explanation.vocabulary,
                                                     options.services ? inspection::Asked::bundlesAndServices
                                                                      : inspection::Asked::bundles));
    io.out << (options.json ? toJson(explanation, toolName) : toText(explanation)) << std::flush;
    if (!explanation.findings.empty()) {
        throw problemOf(explanation.findings);
    }
    return ExitStatus::ok;
}

} // namespace

Command addExplain(CLI::App& program)
{
    const auto options = std::make_shared<ExplainOptions>();
    CLI::App* app = program.add_subcommand(
        "explain", "Say of each bundle why the conditions admit or refuse it, and which smallest change of the "
                   "conditions would admit what is refused. Runs no code of a bundle, unless services are asked for.");
    addDirectory(*app, *options);
    app->add_option("NAME", options->names,
                    "Component name, symbolic name or file name of a bundle to explain; without one, all")
        ->type_name("");
    addConditions(*app, *options);
    app->add_flag("--services", options->services,
                  "Start the bundles as 'run' does, and explain the services too that it would look at to load them");
    addJson(*app, options->json);
    addLogLevel(*app, *options);
    addTimeout(*app, *options);
    return {app, [options](Streams& io) { return run(*options, io); }};
}

} // namespace ostrel::host
