#pragma once

#include <string>
#include <vector>

namespace cppmicroservices::core {

/// The names of the libraries that the file needs; none when it cannot be read or is no library.
std::vector<std::string> neededBy(std::string const& location);

/// Only the source is compatible between this framework and an installed CppMicroServices, not the built bundle, and
/// opening a library runs code of it. So this looks at what the library needs.
///
/// @throws std::runtime_error that names the file and the framework that it was built for, when that is not this one
void refuseForeignLibrary(std::string const& location, std::vector<std::string> const& needed);

} // namespace cppmicroservices::core
