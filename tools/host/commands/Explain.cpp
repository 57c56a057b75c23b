#include "commands/Explain.h"

#include "BundleDirectory.h"
#include "Conditions.h"
#include "Findings.h"
#include "FrameworkHost.h"
#include "HostOptions.h"
#include "NamedSubjects.h"
#include "Remarks.h"
#include "Tool.h"

#include <CLI/CLI.hpp>

#include <inspection/Explanation.h>
#include <inspection/Remarks.h>
#include <memory>

namespace ostrel::host {

namespace {

struct ExplainOptions : HostOptions {
    std::vector<std::string> names;
    bool services = false;
    bool json = false;
};

ExitStatus run(const ExplainOptions& options, Streams& io)
{
    const auto conditions = parseConditions(options.when, options.require);
    bundleDirectory(options.directory);
    const RunningFramework framework;
    inspection::Explanation explanation =
        inspection::explainDirectory(framework.context(), options.directory, conditions);
    const Remarks remarks{io.err, options.logLevel};
    if (options.names.empty()) {
        remarks.warnings(inspection::remarksOn(explanation, options.directory));
    } else {
        keepNamed(explanation, options.names);
    }
    remarks.warnings(
        inspection::remarksOnConditions(explanation.conditions, explanation.vocabulary, inspection::Asked::bundles));
    io.out << (options.json ? toJson(explanation, toolName) : toText(explanation));
    if (!explanation.findings.empty()) {
        io.out.flush();
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
    addJson(*app, options->json);
    addLogLevel(*app, *options);
    return {app, [options](Streams& io) { return run(*options, io); }};
}

} // namespace ostrel::host
