#include "commands/Inspect.h"

#include "frame/HostOptions.h"
#include "frame/Problem.h"
#include "frame/Remarks.h"
#include "frame/Tool.h"
#include "hosting/BundleDirectory.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <inspection/Inspection.h>
#include <memory>
#include <string>
#include <system_error>

namespace ostrel::host {

namespace {

using inspection::InspectedFile;
using inspection::Inspection;

struct InspectOptions {
    std::string path;
    bool json = false;
};

Inspection inspectionOf(const std::string& path)
{
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found) {
        throw Problem{ExitStatus::directory,
                      {"there is no such file or directory", path, {"nothing has this name"}, "check the spelling"}};
    }
    return reading(
        [&] { return is_directory(status) ? inspection::inspectDirectory(path) : inspection::inspectFile(path); });
}

ExitStatus run(const InspectOptions& options, Streams& io)
{
    const Inspection inspection = inspectionOf(options.path);
    if (inspection.files.empty()) {
        Remarks{io.err, LogLevel::problems}.warning('"' + options.path + "\" holds no file");
    }
    io.out << (options.json ? toJson(inspection, toolName) : toText(inspection));
    const bool isNo = std::any_of(inspection.files.begin(), inspection.files.end(),
                                  [](const InspectedFile& file) { return file.fault.has_value(); });
    return isNo ? ExitStatus::answerIsNo : ExitStatus::ok;
}

} // namespace

Command addInspect(CLI::App& program)
{
    const auto options = std::make_shared<InspectOptions>();
    CLI::App* app = program.add_subcommand(
        "inspect", "Say what a file is and holds, or each file of a directory, and which conditions are declared. "
                   "Runs no code of a bundle.");
    app->add_option("PATH", options->path, "A file that is to be a bundle, or a directory with bundle files")
        ->required()
        ->type_name("");
    addJson(*app, options->json);
    return {app, [options](Streams& io) { return run(*options, io); }};
}

} // namespace ostrel::host
