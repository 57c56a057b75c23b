#pragma once

#include <string>
#include <vector>

namespace ostrel::platform {

/// The names of the regular files in a directory, links to such included, in ascending byte order.
///
/// A link that leads nowhere or in a circle is no link to a file.
///
/// @param directory  bytes, without or with a slash at the end
/// @throws what failToRead() throws, for the directory or for an entry whose status cannot be told
/// @locks  none
/// @cost   asks for the status of the entries whose kind the directory does not tell, and of links
std::vector<std::string> regularFiles(const std::string& directory);

} // namespace ostrel::platform
