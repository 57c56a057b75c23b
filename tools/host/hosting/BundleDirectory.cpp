#include "hosting/BundleDirectory.h"

#include "frame/Problem.h"

#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace ostrel::host {

namespace {

[[noreturn]] void fail(const std::string& argument, const std::string& why, const std::string& remedy)
{
    throw Problem{ExitStatus::directory, {"the bundle directory cannot be read", argument, {why}, remedy}};
}

/// A remedy that fits the error; `forPermissions` says where those lie.
const char* remedyFor(const std::error_code& error, const char* forPermissions)
{
    if (error == std::errc::permission_denied) {
        return forPermissions;
    }
    if (error == std::errc::filename_too_long) {
        return "give it by a shorter path, from a directory nearer to it";
    }
    if (error == std::errc::too_many_files_open) {
        return "raise the limit of open files of this process, which 'ulimit -n' shows";
    }
    if (error == std::errc::too_many_files_open_in_system) {
        return "end programs that keep many files open, or raise the limit of the system, fs.file-max";
    }
    if (error == std::errc::too_many_symbolic_link_levels) {
        return "mend the links on its path, which lead round in a circle";
    }
    return "check the path, and the file system that it is on";
}

} // namespace

ostrel::platform::Utf16Path bundleDirectory(const std::string& argument)
{
    namespace fs = std::filesystem;

    std::u16string path;
    try {
        path = ostrel::platform::toUtf16(argument);
    } catch (const std::runtime_error&) {
        fail(argument, "its name is not UTF-8", "rename it, or give a link to it that has a UTF-8 name");
    }

    std::error_code error;
    const fs::file_status status = fs::status(argument, error);
    if (status.type() == fs::file_type::not_found) {
        fail(argument, "it does not exist", "check the spelling, or build the bundles first");
    }
    if (error) {
        fail(argument, error.message(), remedyFor(error, "check the permissions of the directories above it"));
    }
    if (status.type() != fs::file_type::directory) {
        fail(argument, "it is not a directory", "give the directory that holds the bundle files");
    }
    const fs::directory_iterator entries{argument, error};
    if (error) {
        fail(argument, error.message(), remedyFor(error, "check the permissions of the directory"));
    }
    return ostrel::platform::Utf16Path{std::move(path)};
}

void failToList(const std::system_error& error)
{
    // "PATH: WORDS"
    const std::string text = error.what();
    const std::string words = ": " + error.code().message();
    const std::size_t end = text.rfind(words);
    const bool isLink =
        error.code() == std::errc::filename_too_long || error.code() == std::errc::too_many_symbolic_link_levels;
    throw Problem{ExitStatus::directory,
                  {"what lies there cannot be read",
                   text.substr(0, end),
                   {error.code().message()},
                   isLink ? "remove it, or let it lead to a file"
                          : remedyFor(error.code(), "check the permissions of the directory that it lies in")}};
}

} // namespace ostrel::host
