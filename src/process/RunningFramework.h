#pragma once

#include "bundle_reader/elf/FrameworkNeeded.h"

namespace ostrel::process {

/// The framework that this process runs on, by the file name of the library that holds FrameworkFactory.
///
/// @return `none` when that library is called otherwise; nothing can be said about bundles then
/// @locks  none that other code could hold but the dynamic loader's
/// @cost   the first call looks through the loaded libraries, the others cost nothing
bundle_reader::Framework runningFramework() noexcept;

} // namespace ostrel::process
