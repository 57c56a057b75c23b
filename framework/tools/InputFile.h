#pragma once

#include <string>

/// All bytes of a file.
/// @throws std::runtime_error with `what` and the file's name
std::string readFile(const std::string& path, const std::string& what);
