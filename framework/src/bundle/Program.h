#pragma once

#include <string>

namespace cppmicroservices::detail::core {

/// The file of the program that this process runs; "" when it cannot be told. It is a bundle file like others when an
/// archive was appended to it, only that its code is loaded already.
///
/// @cost a question to the system at the first call, nothing later
std::string const& programFile();

/// Whether the program's file ends with an archive in which at least one bundle has a manifest.
///
/// @cost the file is looked at once in a process; of one without an archive the end is read
bool programHoldsBundles();

} // namespace cppmicroservices::detail::core
