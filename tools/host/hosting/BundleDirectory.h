#pragma once

#include <platform/Utf16Path.h>

#include <string>
#include <system_error>

namespace ostrel::host {

/// The directory argument as the container wants it.
///
/// @throws Problem (directory) if it is not UTF-8, does not exist, is no directory or cannot be read
ostrel::platform::Utf16Path bundleDirectory(const std::string& argument);

/// @param error  as the functions of inspection/ throw it, with the path in its text
[[noreturn]] void failToList(const std::system_error& error);

/// Runs what lists a directory. It may be gone or closed by now, and of its entries the status may be unknown.
///
/// @throws Problem (directory) that names what cannot be read; what `list` throws else
template <typename List>
auto reading(List list) -> decltype(list())
{
    try {
        return list();
    } catch (const std::system_error& error) {
        failToList(error);
    }
}

} // namespace ostrel::host
