#pragma once

namespace ostrel::host {

/// Who writes an output, with the version.
inline constexpr const char* toolName = "ostrel-host " OSTREL_HOST_VERSION;

} // namespace ostrel::host
