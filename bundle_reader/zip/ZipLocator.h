#pragma once

#include "bundle_reader/file/ByteSource.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ostrel::bundle_reader {

/// Where a zip archive lies in a file.
struct ZipPlace {
    enum class State { none, found, damaged };
    State state = State::none;
    std::uint64_t begin = 0; ///< when found: the archive's first byte, to which the offsets in it are relative
    std::uint64_t end = 0;   ///< when found: behind the archive's comment
    std::string damage;      ///< why, when damaged
};

/// Where archives are looked for, besides at the end of the file.
struct ZipPlaces {
    /// A part of the file, from a first byte to behind the last.
    using Part = std::pair<std::uint64_t, std::uint64_t>;

    bool atBeginning = false;       ///< the file begins like an archive
    bool appended = false;          ///< what lies from `appendedFrom` on may be an archive with other bytes behind it
    std::uint64_t appendedFrom = 0; ///< where the shared object ends; 0 for a file that is no shared object
    std::vector<Part> sections;     ///< of a shared object, that tools link archives into; in the order of the file
};

/// Whether the bytes begin with the record that a zip archive begins with.
bool beginsLikeZip(std::string_view bytes);

/// Whether an archive's end record ends where the source ends.
bool endsLikeZip(const ByteSource& source);

/// Finds the zip archive of a file; of several the last one.
///
/// It lies at the file's end, or at the end of a section, or at the file's beginning. A lone signature is no archive:
/// programs that read archives hold such constants. An archive counts as found when its directory is complete and each
/// entry's header is where the directory says; as damaged when there is no such one, but the file's end says so, or
/// entries of an archive begin behind the shared object, or a bundle's manifest begins in a section.
///
/// @throws std::bad_alloc, and what the source throws
/// @cost   some 64 KiB at each place, the directory, and the header of each entry; not what lies between
ZipPlace locateZip(const ByteSource& source, const ZipPlaces& places);

} // namespace ostrel::bundle_reader
