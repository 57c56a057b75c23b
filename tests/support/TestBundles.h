#pragma once

#include <filesystem>
#include <string>

namespace ostrel::test {

/// The built library of a target of tests/bundles.
/// @throws std::invalid_argument if there is no such target
std::filesystem::path testBundle(const std::string& target);

} // namespace ostrel::test
