#pragma once

namespace ostrel::host {

/// From now on a crash, an abort and an exception that nobody catches leave a message that names the bundle and what it
/// was doing, before they end the process as they would have without. To be called on the main thread.
void tellCrashes();

} // namespace ostrel::host
