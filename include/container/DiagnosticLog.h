#pragma once

#include "platform/DiagnosticLogger.h"
#include "platform/Export.h"

namespace ostrel::us_container {

/// The library's one log source, channel "ostrel::us_container".
///
/// All records of all containers of the process go through it into the Boost.Log core; where they end up is the host's
/// choice. A host silences severities with `diagnosticLog().setEnabledSeverities(mask)`. The severities in use:
///
/// | bit   | records                                                                            |
/// |-------|------------------------------------------------------------------------------------|
/// | 0x8   | progress and decisions: bundles started or skipped, filter outcomes                |
/// | 0x10  | problems while stopping a bundle; services loaded                                  |
/// | 0x100 | filter declarations that are malformed or cannot be evaluated                      |
/// | 0x200 | failures with their cause: a bundle not installed, a service that did not unload   |
///
/// The object lives from the library's static initialisation until the process ends. So does what Boost.Log needs for
/// records, so that a container may have static storage: what it logs when it is destroyed reaches the sinks.
///
/// @locks none
OSTREL_EXPORT ostrel::platform::DiagnosticLogger& diagnosticLog();

} // namespace ostrel::us_container
