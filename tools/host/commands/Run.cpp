#include "commands/Run.h"

#include "BundleDirectory.h"
#include "Conditions.h"
#include "ConsoleCapture.h"
#include "DiagnosticOutput.h"
#include "FrameworkHost.h"
#include "HostOptions.h"
#include "Problem.h"
#include "ReportOutput.h"
#include "StartProblem.h"
#include "UnloadProblem.h"
#include "watch/Watch.h"

#include <CLI/CLI.hpp>

#include <container/MicroServicesContainer.h>
#include <exception>
#include <memory>
#include <string>

namespace ostrel::host {

namespace {

using ostrel::us_container::FilterMap;
using ostrel::us_container::MicroServicesContainer;

struct RunOptions : HostOptions {
    bool console = false;
};

/// Runs one step in which bundles' own code takes part.
template <typename Step>
void guarded(const FrameworkHost& host, const std::string& what, Step step)
{
    const std::string remedy = "repair the bundle, take it out of the directory, or refuse it by other conditions";
    try {
        step();
    } catch (const Problem&) {
        throw;
    } catch (const std::exception& error) {
        throw Problem{ExitStatus::bundle, {what, host.culprit(error.what()), {error.what()}, remedy}};
    } catch (...) {
        throw Problem{ExitStatus::bundle,
                      {what, host.culprit({}), {"a bundle threw something that is no std::exception"}, remedy}};
    }
}

void start(MicroServicesContainer& container, const FrameworkHost& host, const FilterMap& conditions)
{
    try {
        container.startBundles(conditions);
    } catch (const std::exception& error) {
        throw Problem{ExitStatus::bundle, startProblem(host, error.what())};
    }
}

void unload(MicroServicesContainer& container, const FrameworkHost& host, DiagnosticOutput& diagnostics)
{
    diagnostics.beginUnload();
    guarded(host, "the bundles cannot be unloaded", [&] { container.unload(); });
    if (!diagnostics.unloadProblems().empty()) {
        throw Problem{ExitStatus::bundle, unloadProblems(host, diagnostics.unloadProblems())};
    }
}

std::string reportOf(MicroServicesContainer& container, bool console)
{
    if (!console) {
        return container.getMicroServicesString();
    }
    return printed([&] {
        container.printAllBundles();
        container.printAllServices();
    });
}

ExitStatus run(const RunOptions& options, Streams& io)
{
    const FilterMap conditions = parseConditions(options.when, options.require);
    const auto directory = bundleDirectory(options.directory);

    DiagnosticOutput diagnostics{options.logLevel, io.err};
    Watch watch{options.timeout};
    FrameworkHost host = FrameworkHost::installing(directory, options.directory);
    watch.follow(host.context());
    {
        MicroServicesContainer container{host.context(), directory};
        watch.step("the bundles were being started");
        guarded(host, "the bundles cannot be started", [&] { start(container, host, conditions); });
        watch.step("the services were being loaded");
        guarded(host, "the services cannot be loaded", [&] { container.loadServices(conditions); });
        watch.step("the services were being reported");
        guarded(host, "the services cannot be reported",
                [&] { writeReport(io, reportOf(container, options.console)); });
        watch.step("the bundles were being unloaded");
        unload(container, host, diagnostics);
    }
    watch.step("the framework was being stopped");
    host.stop();
    return ExitStatus::ok;
}

} // namespace

Command addRun(CLI::App& program)
{
    const auto options = std::make_shared<RunOptions>();
    CLI::App* app = program.add_subcommand(
        "run", "Start the bundles of a directory that the conditions admit, load their services, print a report of "
               "both, and unload.");
    addDirectory(*app, *options);
    addConditions(*app, *options);
    app->add_flag("--console", options->console,
                  "Print the console reports instead: a table of all installed bundles, then the names of the loaded "
                  "services and the services of all installed bundles with their users");
    addLogLevel(*app, *options);
    addTimeout(*app, *options);
    return {app, [options](Streams& io) { return run(*options, io); }};
}

} // namespace ostrel::host
