#include "bundle/BuiltFor.h"

#include "bundle_reader/BundleFile.h"

#include <algorithm>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace cppmicroservices::detail::core {

LibraryFile inspectLibrary(std::string const& location)
{
    try {
        auto contents = ostrel::bundle_reader::readHeaders(location);
        return {std::move(contents.needed), contents.truncated ? std::move(contents.damage) : std::string()};
    } catch (std::system_error const&) {
        return {}; // who opens the file next reports it
    }
}

void refuseForeignLibrary(std::string const& location, std::vector<std::string> const& needed)
{
    auto const foreign = std::find_if(needed.begin(), needed.end(), [](std::string const& name) {
        return name.rfind("libCppMicroServices.so", 0) == 0;
    });
    if (foreign != needed.end()) {
        throw std::runtime_error("Failed to install bundle library at " + location +
                                 ": it was built for an installed CppMicroServices (it needs " + *foreign +
                                 "), not for the embedded framework; build the bundle again against this one.");
    }
}

} // namespace cppmicroservices::detail::core
