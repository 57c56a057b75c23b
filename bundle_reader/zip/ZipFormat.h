#pragma once

#include "bundle_reader/file/ByteWindow.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The records of the format of zip archives, as far as an archive is to be found by them.
namespace ostrel::bundle_reader::zip_format {

/// Where a number stands in its record; all are little endian.
struct Field {
    std::uint64_t offset;
    std::size_t size;
};

/// In front of each entry's data.
namespace entry {
inline constexpr std::string_view mark{"PK\x03\x04"};
inline constexpr std::uint64_t size = 30;
inline constexpr Field neededVersion{4, 2};
inline constexpr Field flags{6, 2};
inline constexpr Field method{8, 2};
inline constexpr Field packedSize{18, 4};
inline constexpr Field nameSize{26, 2};
inline constexpr Field extraSize{28, 2};
inline constexpr std::uint64_t sizesFollowTheData = 0x8; // a flag: the sizes in this record are not told
inline constexpr std::uint64_t newestVersion = 63;
inline constexpr std::uint64_t highestMethod = 99;
inline constexpr std::uint64_t longestName = 4096; // of a path
} // namespace entry

/// One for each entry, together the archive's directory.
namespace directory {
inline constexpr std::string_view mark{"PK\x01\x02"};
inline constexpr std::uint64_t size = 46;
inline constexpr Field packedSize{20, 4};
inline constexpr Field nameSize{28, 2};
inline constexpr Field extraSize{30, 2};
inline constexpr Field commentSize{32, 2};
inline constexpr Field entryOffset{42, 4};
} // namespace directory

/// Behind the directory, with a comment at its end.
namespace end {
inline constexpr std::string_view mark{"PK\x05\x06"};
inline constexpr std::uint64_t size = 22;
inline constexpr std::uint64_t longest = size + 0xffff;
inline constexpr Field disks{4, 4};
inline constexpr Field entriesOfDisk{8, 2};
inline constexpr Field entries{10, 2};
inline constexpr Field directorySize{12, 4};
inline constexpr Field directoryOffset{16, 4};
inline constexpr Field commentSize{20, 2};
} // namespace end

/// In front of the end record, in archives above the bounds of this format (zip64).
namespace wide {
inline constexpr std::string_view mark{"PK\x06\x07"};
inline constexpr std::uint64_t size = 20;
} // namespace wide

inline std::uint64_t number(ByteWindow& bytes, std::uint64_t record, const Field& field)
{
    return bytes.number(record + field.offset, field.size, ByteOrder::little);
}

} // namespace ostrel::bundle_reader::zip_format
