#pragma once

#include "bundle_reader/file/ByteSource.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::bundle_reader {

/// A part of a file.
struct Extent {
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
};

/// What the headers of an ELF file tell.
struct Elf {
    bool sharedObject = false;           ///< false for programs, object files and headers of no known class
    bool truncated = false;              ///< the headers promise more bytes than there are, or contradict themselves
    std::string damage;                  ///< why, when truncated
    std::uint64_t end = 0;               ///< where headers, segments and sections end: what follows was appended
    std::vector<std::string> needed;     ///< DT_NEEDED names, in file order
    std::vector<Extent> archiveSections; ///< the sections into which tools link archives, in the order of the file
};

bool beginsLikeElf(std::string_view bytes);

/// Reads the headers of an ELF file of either class and byte order. The source must begin like one; the rest may be
/// anything.
///
/// @throws std::bad_alloc, and what the source throws
/// @cost   linear in the number of segments and sections; what these hold is not read
Elf readElf(const ByteSource& source);

} // namespace ostrel::bundle_reader
