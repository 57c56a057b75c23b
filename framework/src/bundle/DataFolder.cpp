#include "bundle/DataFolder.h"

#include "cppmicroservices/Constants.h"

#include <filesystem>
#include <new>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

namespace cppmicroservices::detail::core {

namespace {

std::string textIn(AnyMap const& properties, std::string const& key, std::string const& otherwise)
{
    auto const found = properties.find(key);
    auto const* const text = found != properties.cend() ? any_cast<std::string>(&found->second) : nullptr;
    return text != nullptr ? *text : otherwise;
}

} // namespace

std::string dataFolder(AnyMap const& properties, long id)
{
    auto storage = textIn(properties, Constants::FRAMEWORK_STORAGE, "fwdir");
    if (storage.empty()) {
        return {};
    }
    if (storage.front() != '/') {
        storage = textIn(properties, Constants::FRAMEWORK_WORKING_DIR, ".") + "/" + storage;
    }
    return storage + "/data/" + std::to_string(id) + "/";
}

void makeDataFolder(std::string const& folder)
{
    std::error_code failed;
    std::filesystem::create_directories(folder, failed);
    if (failed) {
        throw std::invalid_argument("Cannot make the folder " + folder + " for a bundle's data: " + failed.message() +
                                    ". Check the property " + Constants::FRAMEWORK_STORAGE + ".");
    }
}

std::error_code removeDataFolder(std::string const& folder) noexcept
{
    std::error_code failed;
    // Most bundles never asked for theirs, and this is far cheaper than finding out by removing it.
    if (access(folder.c_str(), F_OK) != 0) {
        return failed;
    }
    try {
        std::filesystem::remove_all(folder, failed);
    } catch (std::bad_alloc const&) {
        failed = std::make_error_code(std::errc::not_enough_memory);
    }
    return failed;
}

} // namespace cppmicroservices::detail::core
