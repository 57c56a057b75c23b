#pragma once

#include <platform/Utf16Path.h>

#include <string>

namespace ostrel::host {

/// The directory argument as the container wants it.
///
/// @throws Problem (directory) if it is not UTF-8, does not exist, is no directory or cannot be read
ostrel::platform::Utf16Path bundleDirectory(const std::string& argument);

} // namespace ostrel::host
