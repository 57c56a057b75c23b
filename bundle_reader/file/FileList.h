#pragma once

#include <string>
#include <vector>

namespace ostrel::bundle_reader {

/// What lies in a directory, or why that cannot be told.
struct FileList {
    std::vector<std::string> files; ///< names of the regular files, links to such included, in ascending byte order
    bool hasFolders = false;        ///< there are directories, or links to such
    int error = 0;                  ///< errno; with one, the rest says nothing
    std::string unreadable;         ///< what the error is about: the directory, or the path of an entry
};

/// Lists a directory. A link that leads nowhere or in a circle is no link to a file.
///
/// @param directory  bytes, without or with a slash at the end; not empty
/// @throws std::bad_alloc and nothing else
/// @locks  none
/// @cost   asks for the status of the entries whose kind the directory does not tell, and of links
FileList listFiles(const std::string& directory);

} // namespace ostrel::bundle_reader
