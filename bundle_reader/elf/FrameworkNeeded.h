#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ostrel::bundle_reader {

/// The frameworks that a bundle may be built for. Only the source is compatible between them.
enum class Framework {
    none,      ///< neither, or one that cannot be told
    embedded,  ///< the one that comes with this project
    installed, ///< an installed CppMicroServices
};

/// The framework that a library is, by its file name, version behind ".so" or not.
Framework frameworkNamed(std::string_view fileName);

/// What a library was built for, and how that is known.
struct BuiltFor {
    Framework framework = Framework::none;
    std::string needed; ///< the name in the library's list; "" for none
};

/// @param needed  the libraries that a library needs, as it names them
/// @param except  a framework that is passed over, as if it were not named
/// @return the first framework that is named
BuiltFor builtFor(const std::vector<std::string>& needed, Framework except = Framework::none);

} // namespace ostrel::bundle_reader
