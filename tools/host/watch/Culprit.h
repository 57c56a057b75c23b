#pragma once

#include "watch/Activity.h"
#include "watch/SafeLine.h"

namespace ostrel::host {

/// "ostrel-host: error: FILE: the bundle NAME did WHILE it was being started", or as much of it as is known. A signal
/// handler may call these.
///
/// @param did     what a bundle did, such as "crashed"
/// @param nobody  what is said where no bundle is known, such as "the program crashed"
SafeLine& writeCulprit(SafeLine& line, const Activity::Suspect& suspect, const char* did, const char* nobody) noexcept;

} // namespace ostrel::host
