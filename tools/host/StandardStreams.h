#pragma once

namespace ostrel::host {

/// Makes writing to a standard stream safe whatever the caller of the program did to it.
///
/// A closed pipe becomes a failed write instead of the end of the process, so that bundles are still stopped in order.
/// A standard stream that is closed at start is reserved, so that no file that a bundle opens takes its number and
/// receives the report.
void prepareStandardStreams();

} // namespace ostrel::host
