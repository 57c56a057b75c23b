#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// One input for the target that is linked in: from libFuzzer, or from Replay.cpp for inputs that lie in files.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace ostrel::fuzz {

inline std::string_view textOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// Ends the process, with `rule` on standard error, when a rule of the target does not hold. In all builds, as assert
/// is not.
void require(bool holds, const char* rule);

} // namespace ostrel::fuzz
