#pragma once

#include "cppmicroservices/AnyMap.h"

#include <string>
#include <system_error>

namespace cppmicroservices::detail::core {

/// The folder for the data of the bundle with that id, with a slash behind; "" when the framework has no storage.
///
/// It lies in the folder that the framework's properties name as its storage, seen from its working folder.
std::string dataFolder(AnyMap const& properties, long id);

/// Makes the folder, and those above it.
///
/// @throws std::invalid_argument that names the folder and the reason
void makeDataFolder(std::string const& folder);

/// Removes the folder, if there is one, and all that is in it. What cannot be removed stays.
///
/// @return why something stayed, if it did
std::error_code removeDataFolder(std::string const& folder) noexcept;

} // namespace cppmicroservices::detail::core
