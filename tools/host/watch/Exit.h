#pragma once

#include "frame/ExitStatus.h"

namespace ostrel::host {

/// From now on, code that ends the process by exit() or quick_exit() leaves a message that names it, and the process
/// ends with the status of failing bundles. _exit() cannot be noticed. Calling it a second time does nothing.
void tellExits();

/// The program ends by itself from here on, which is nothing to tell.
void allowExit();

/// Ends the process without another line of code of any bundle.
[[noreturn]] void endAtOnce(ExitStatus status);

} // namespace ostrel::host
