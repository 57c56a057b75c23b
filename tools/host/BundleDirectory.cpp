#include "BundleDirectory.h"

#include "Problem.h"

#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace ostrel::host {

namespace {

[[noreturn]] void fail(const std::string& argument, const std::string& why, const std::string& remedy)
{
    throw Problem{ExitStatus::directory, {"cannot read the bundle directory", quoted(argument), why, remedy}};
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
        fail(argument, error.message(), "check the permissions of the directories above it");
    }
    if (status.type() != fs::file_type::directory) {
        fail(argument, "it is not a directory", "give the directory that holds the bundle files");
    }
    const fs::directory_iterator entries{argument, error};
    if (error) {
        fail(argument, error.message(), "check the permissions of the directory");
    }
    return ostrel::platform::Utf16Path{std::move(path)};
}

} // namespace ostrel::host
