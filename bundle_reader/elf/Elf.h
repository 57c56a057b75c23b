#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::bundle_reader {

/// What the headers of an ELF file tell.
struct Elf {
    bool sharedObject = false;       ///< false for programs, object files and headers of no known class
    bool truncated = false;          ///< the headers promise more bytes than there are, or contradict themselves
    std::string damage;              ///< why, when truncated
    std::uint64_t end = 0;           ///< where headers, segments and sections end: what follows was appended
    std::vector<std::string> needed; ///< DT_NEEDED names, in file order
};

bool beginsLikeElf(std::string_view bytes);

/// Reads the headers of an ELF file of either class and byte order. `bytes` must begin like one; the rest may be
/// anything.
Elf readElf(std::string_view bytes);

} // namespace ostrel::bundle_reader
