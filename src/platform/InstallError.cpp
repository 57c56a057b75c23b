#include "platform/InstallError.h"

#include <cerrno>
#include <new>
#include <stdexcept>
#include <system_error>

namespace ostrel::platform {

void failInstall(const std::string& text)
{
    throw std::runtime_error{"installBundles: " + text};
}

void failToRead(const std::string& path, int error)
{
    if (error == ENOMEM) {
        throw std::bad_alloc{};
    }
    if (error == ENOENT) {
        failInstall("'" + path + "' does not exist; check the path");
    }
    failInstall("'" + path + "' cannot be read: " + std::generic_category().message(error) +
                "; check the path and its permissions");
}

} // namespace ostrel::platform
