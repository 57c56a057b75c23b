#include "bundle/BuiltFor.h"

#include "bundle_reader/BundleFile.h"
#include "bundle_reader/elf/FrameworkNeeded.h"

#include <new>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace cppmicroservices::detail::core {

LibraryFile inspectLibrary(std::string const& location)
{
    try {
        auto contents = ostrel::bundle_reader::readHeaders(location);
        return {std::move(contents.needed), contents.truncated ? std::move(contents.damage) : std::string()};
    } catch (std::system_error const& error) {
        if (error.code() == std::errc::not_enough_memory) {
            throw std::bad_alloc();
        }
        return {}; // who opens the file next reports it
    }
}

void refuseForeignLibrary(std::string const& location, std::vector<std::string> const& needed)
{
    using ostrel::bundle_reader::Framework;
    auto const foreign = ostrel::bundle_reader::builtFor(needed, Framework::embedded);
    if (foreign.framework != Framework::none) {
        throw std::runtime_error("Failed to install bundle library at " + location +
                                 ": it was built for an installed CppMicroServices (it needs " + foreign.needed +
                                 "), not for the embedded framework; build the bundle again against this one.");
    }
}

} // namespace cppmicroservices::detail::core
