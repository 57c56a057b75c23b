#include "commands/Run.h"

#include "BundleDirectory.h"
#include "Conditions.h"
#include "DiagnosticOutput.h"
#include "FrameworkHost.h"
#include "Problem.h"

#include <CLI/CLI.hpp>

#include <container/MicroServicesContainer.h>
#include <exception>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ostrel::host {

namespace {

using ostrel::us_container::FilterMap;
using ostrel::us_container::MicroServicesContainer;

struct RunOptions {
    std::string directory;
    std::vector<std::string> when;
    std::vector<std::string> require;
    std::string logLevel = "problems";
    bool console = false;
};

const std::map<std::string, LogLevel>& logLevels()
{
    static const std::map<std::string, LogLevel> levels{{"none", LogLevel::none},
                                                        {"problems", LogLevel::problems},
                                                        {"decisions", LogLevel::decisions},
                                                        {"all", LogLevel::all}};
    return levels;
}

/// Runs one step in which bundles' own code takes part.
template <typename Step>
void guarded(const FrameworkHost& host, const std::string& what, Step step)
{
    const std::string remedy = "repair the bundle, take it out of the directory, or refuse it by other conditions";
    try {
        step();
    } catch (const std::exception& error) {
        throw Problem{ExitStatus::bundle, {what, host.culprit(error.what()), error.what(), remedy}};
    } catch (...) {
        throw Problem{ExitStatus::bundle,
                      {what, host.culprit({}), "a bundle threw something that is no std::exception", remedy}};
    }
}

void unload(MicroServicesContainer& container, const FrameworkHost& host, DiagnosticOutput& diagnostics)
{
    diagnostics.beginUnload();
    guarded(host, "cannot unload the bundles", [&] { container.unload(); });
    if (!diagnostics.unloadProblems().empty()) {
        std::string why;
        for (const std::string& problem : diagnostics.unloadProblems()) {
            why += (why.empty() ? "" : "\n") + problem;
        }
        throw Problem{ExitStatus::bundle,
                      {"not everything was unloaded in order", host.culprit(diagnostics.unloadProblems().front()), why,
                       "repair the bundle's Stop()"}};
    }
}

/// The container prints its console reports to std::cout itself; only the other report takes the way through `out`.
void report(MicroServicesContainer& container, bool console, std::ostream& out)
{
    if (console) {
        container.printAllBundles();
        container.printAllServices();
    } else {
        out << container.getMicroServicesString() << std::flush;
    }
}

ExitStatus run(const RunOptions& options, Streams& io)
{
    const FilterMap conditions = parseConditions(options.when, options.require);
    const auto directory = bundleDirectory(options.directory);

    DiagnosticOutput diagnostics{logLevels().at(options.logLevel), io.err};
    FrameworkHost host = FrameworkHost::installing(directory, quoted(options.directory));
    {
        MicroServicesContainer container{host.context(), directory};
        guarded(host, "cannot start the bundles", [&] { container.startBundles(conditions); });
        guarded(host, "cannot load the services", [&] { container.loadServices(conditions); });
        guarded(host, "cannot report the services", [&] { report(container, options.console, io.out); });
        unload(container, host, diagnostics);
    }
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
    app->add_option("DIR", options->directory, "Directory with the bundle files")->required();
    app->add_option("--when", options->when,
                    "NAME=VALUE: a bundle or service that declares NAME is admitted only with this VALUE. "
                    "May be repeated")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
    app->add_option("--require", options->require,
                    "NAME=VALUE: as --when, and what declares none of the required NAMEs is refused. May be repeated")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
    app->add_flag("--console", options->console,
                  "Print the console reports instead: a table of all installed bundles, then the names of the loaded "
                  "services and the services of all installed bundles with their users");
    app->add_option("--log-level", options->logLevel,
                    "Diagnostic records shown on standard error: none; problems (malformed filters and failures, "
                    "0x100 and 0x200); decisions (also what was admitted or refused and why, 0x8); all (also loaded "
                    "services, 0x10)")
        ->type_name("LEVEL")
        ->check(CLI::IsMember(logLevels()))
        ->capture_default_str();
    app->footer(describeExitStatuses());
    return {app, [options](Streams& io) { return run(*options, io); }};
}

} // namespace ostrel::host
