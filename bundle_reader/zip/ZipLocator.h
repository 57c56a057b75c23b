#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ostrel::bundle_reader {

enum class SearchIn {
    end,        ///< the archive ends where the file ends
    everywhere, ///< or lies anywhere in the file
};

/// Where a zip archive lies in a file.
struct ZipPlace {
    enum class State { none, found, damaged };
    State state = State::none;
    std::uint64_t begin = 0; ///< when found: the archive's first byte, to which the offsets in it are relative
    std::uint64_t end = 0;   ///< when found: behind the archive's comment
    std::string damage;      ///< why, when damaged
};

/// The longest that an archive's end record can be, comment included.
inline constexpr std::size_t endRecordLimit = 22 + 0xffff;

/// Whether the bytes begin with the record that a zip archive begins with.
bool beginsLikeZip(std::string_view bytes);

/// Whether an archive's end record ends where `bytes` end. The last endRecordLimit bytes of a file are enough.
bool endsLikeZip(std::string_view bytes);

/// Finds the zip archive in `bytes`; of several the last one.
///
/// A lone signature is no archive: programs that read archives hold such constants. An archive counts as found when its
/// directory is complete and each entry's header is where the directory says; as damaged when there is no such one, but
/// entries of an archive are found from `appendedFrom` on, or a bundle's manifest as an entry anywhere.
///
/// @param appendedFrom  where the shared object ends; 0 for a file that is no shared object
ZipPlace locateZip(std::string_view bytes, SearchIn where, std::uint64_t appendedFrom);

} // namespace ostrel::bundle_reader
