#pragma once

#include <string>

namespace ostrel::platform {

/// @throws std::runtime_error "installBundles: " + `text`
[[noreturn]] void failInstall(const std::string& text);

/// For a path that the system refuses.
///
/// @param error  of the system, as in errno
/// @throws std::bad_alloc when the system had no memory; else std::runtime_error that names the path and the reason
[[noreturn]] void failToRead(const std::string& path, int error);

} // namespace ostrel::platform
