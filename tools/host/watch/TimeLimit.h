#pragma once

#include <chrono>

namespace ostrel::host {

/// From now on a start or a stop of a bundle, or another step, that takes longer ends the process with the status of
/// failing bundles, after a message that names who is at work. To be called on the main thread, once.
///
/// A thread of its own keeps the time until the process has ended. When a step takes too long, it asks the main thread
/// by a signal in whose code it is; where bundles have blocked that signal, the message names nobody.
void limitTime(std::chrono::duration<double> limit);

} // namespace ostrel::host
