#include "hosting/PlanFile.h"

#include "frame/Problem.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

namespace ostrel::host {

namespace {

std::string reason(int error)
{
    return std::generic_category().message(error);
}

} // namespace

void writeFile(const std::string& path, const std::string& content)
{
    std::error_code unknown;
    const auto kind = std::filesystem::status(path, unknown).type();
    // A device or a pipe takes what is written to it; nothing can take its place.
    const bool isReplaced =
        kind == std::filesystem::file_type::regular || kind == std::filesystem::file_type::not_found;
    const std::string temporary = isReplaced ? path + ".new." + std::to_string(::getpid()) : path;
    errno = 0;
    std::ofstream stream{temporary, std::ios::binary | std::ios::trunc};
    stream << content << std::flush;
    stream.close();
    if (!stream || (isReplaced && std::rename(temporary.c_str(), path.c_str()) != 0)) {
        const int error = errno;
        if (isReplaced) {
            std::remove(temporary.c_str());
        }
        throw Problem{ExitStatus::output,
                      {"the file cannot be written", path, {reason(error)}, "give another place, or make room there"}};
    }
}

inspection::Plan readPlanFile(const std::string& path)
{
    const auto fail = [&path](const std::string& why, const std::string& remedy) {
        throw Problem{ExitStatus::usage, {"the plan cannot be read", path, {why}, remedy}};
    };
    errno = 0;
    const std::ifstream stream{path, std::ios::binary};
    std::ostringstream content;
    content << stream.rdbuf();
    if (!stream || !content) {
        fail(reason(errno != 0 ? errno : EISDIR), "give the file that 'ostrel-host plan DIR -o FILE' wrote");
    }
    try {
        return inspection::readPlan(content.str());
    } catch (const std::runtime_error& error) {
        fail(error.what(), "write it anew with 'ostrel-host plan DIR -o FILE'");
    }
    return {};
}

void requireUnchanged(const std::string& path, const inspection::Plan& then, const inspection::Plan& now)
{
    std::vector<std::string> differences = inspection::differences(then, now);
    if (!differences.empty()) {
        throw Problem{ExitStatus::answerIsNo,
                      {"the plan does not hold any more", path, std::move(differences),
                       "make a new plan with 'ostrel-host plan', look at it, and run that one"}};
    }
}

} // namespace ostrel::host
