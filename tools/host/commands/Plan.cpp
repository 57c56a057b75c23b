#include "commands/Plan.h"

#include "frame/Conditions.h"
#include "frame/HostOptions.h"
#include "frame/Remarks.h"
#include "frame/Tool.h"
#include "hosting/BundleDirectory.h"
#include "hosting/PlanFile.h"
#include "hosting/RunningFramework.h"

#include <CLI/CLI.hpp>

#include <inspection/Remarks.h>
#include <memory>

namespace ostrel::host {

namespace {

struct PlanCommandOptions : HostOptions {
    bool keepGoing = false;
    bool json = false;
    std::string outFile;
};

ExitStatus run(const PlanCommandOptions& options, Streams& io)
{
    const auto conditions = parseConditions(options.when, options.require);
    bundleDirectory(options.directory);
    const bool writesJson = options.json || !options.outFile.empty();
    const RunningFramework framework;
    const inspection::Plan plan = reading([&] {
        return inspection::planDirectory(framework.context(), options.directory, conditions,
                                         {options.keepGoing, writesJson});
    });
    const Remarks remarks{io.err, options.logLevel};
    remarks.warnings(inspection::remarksOn(plan, options.directory));
    remarks.warnings(inspection::remarksOnConditions(plan.conditions, plan.vocabulary, inspection::Asked::bundles));
    if (!options.outFile.empty()) {
        writeFile(options.outFile, toJson(plan, toolName));
    } else if (options.json) {
        io.out << toJson(plan, toolName);
    }
    if (!options.json) {
        io.out << toText(plan);
    }
    return ExitStatus::ok;
}

} // namespace

Command addPlan(CLI::App& program)
{
    const auto options = std::make_shared<PlanCommandOptions>();
    CLI::App* app = program.add_subcommand(
        "plan", "Say what 'run' with the same options will do: which bundles start, which are refused, which fail, "
                "and why. Runs no code of a bundle.");
    addDirectory(*app, *options);
    addConditions(*app, *options);
    addKeepGoing(*app, options->keepGoing);
    addJson(*app, options->json);
    app->add_option("-o,--output", options->outFile, "Write the plan as JSON into FILE, for 'run --plan FILE'")
        ->type_name("FILE");
    addLogLevel(*app, *options);
    return {app, [options](Streams& io) { return run(*options, io); }};
}

} // namespace ostrel::host
