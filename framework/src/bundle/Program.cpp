#include "bundle/Program.h"

#include "bundle_reader/BundleFile.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <system_error>

namespace cppmicroservices::detail::core {

namespace {

bool holdsBundles(std::string const& path) noexcept
{
    try {
        if (path.empty() || !ostrel::bundle_reader::endsWithArchive(path)) {
            return false;
        }
        auto const folders = ostrel::bundle_reader::read(path).folders;
        return std::any_of(folders.begin(), folders.end(), [](auto const& folder) { return folder.manifest; });
    } catch (std::exception const&) {
        return false; // removed, or not to be read: whoever installs it by name is told
    }
}

} // namespace

std::string const& programFile()
{
    // Never destroyed: bundles may start while the process ends.
    static auto const& path = *new std::string([] {
        std::error_code failed;
        return std::filesystem::read_symlink("/proc/self/exe", failed).string();
    }());
    return path;
}

bool programHoldsBundles()
{
    static bool const holds = holdsBundles(programFile());
    return holds;
}

} // namespace cppmicroservices::detail::core
