#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::bundle_reader {

/// The names, beginning with `prefix`, of the symbols that an ELF file defines and exports: those that the dynamic
/// loader finds in it by name. In ascending order, each once.
///
/// They are read from the table of dynamic symbols that the section headers name, so a file without section headers has
/// none. Of a hostile file only as much is looked at as lies in it: at most `exportedLimit` names, each of at most
/// `exportedNameLimit` bytes, the prefix included.
///
/// @param path    bytes, as the file system has them
/// @param prefix  not empty
/// @throws std::system_error with the file's name when it cannot be opened or read
/// @throws std::runtime_error "<path>: <what is wrong>" when it is no ELF file or its tables reach past its end
/// @locks  none
/// @cost   reads the tables of sections and dynamic symbols, window by window; the rest of the file is not looked at
std::vector<std::string> exportedSymbols(const std::string& path, std::string_view prefix);

inline constexpr std::size_t exportedLimit = 4096;
inline constexpr std::size_t exportedNameLimit = 4096;

} // namespace ostrel::bundle_reader
