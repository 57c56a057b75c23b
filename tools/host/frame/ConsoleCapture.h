#pragma once

#include <functional>
#include <string>

namespace ostrel::host {

/// What `print` prints to std::cout, on this thread. Other threads, on which bundles may print, keep their way to
/// standard error meanwhile; what they format may still take a column width that was meant for the report.
/// @throws what `print` throws
std::string printed(const std::function<void()>& print);

} // namespace ostrel::host
