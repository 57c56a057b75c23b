#pragma once

#include "cppmicroservices/AnyMap.h"

#include <string>

namespace cppmicroservices::detail::core {

/// The folder for the data of the bundle with that id, with a slash behind; "" when the framework has no storage.
///
/// It lies in the folder that the framework's properties name as its storage, seen from its working folder.
std::string dataFolder(AnyMap const& properties, long id);

/// Makes the folder, and those above it.
///
/// @throws std::invalid_argument that names the folder and the reason
void makeDataFolder(std::string const& folder);

/// Removes the folder and all that is in it; without effect where that is not possible.
void removeDataFolder(std::string const& folder) noexcept;

} // namespace cppmicroservices::detail::core
