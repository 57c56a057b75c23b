#pragma once

#include <string>
#include <vector>

namespace cppmicroservices::detail::core {

/// What is looked at before a library is loaded; nothing when it cannot be read or is no library.
struct LibraryFile {
    std::vector<std::string> needed; ///< the names of the libraries that it needs
    std::string damage;              ///< why the file does not hold all of the library; "" when it does
};

LibraryFile inspectLibrary(std::string const& location);

/// Only the source is compatible between this framework and an installed CppMicroServices, not the built bundle, and
/// opening a library runs code of it. So this looks at what the library needs.
///
/// @throws std::runtime_error that names the file and the framework that it was built for, when that is not this one
void refuseForeignLibrary(std::string const& location, std::vector<std::string> const& needed);

} // namespace cppmicroservices::detail::core
