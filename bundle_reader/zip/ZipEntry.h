#pragma once

#include <cstdint>
#include <ctime>
#include <string>

namespace ostrel::bundle_reader {

/// What the directory of an archive says of an entry; none of it is proven before the entry is read.
struct ZipEntry {
    std::string name;             ///< bytes as in the archive; a folder's ends in '/'
    std::uint64_t size = 0;       ///< unpacked
    std::uint64_t packedSize = 0; ///< in the archive
    std::uint32_t crc = 0;        ///< CRC-32 of the unpacked data
    std::time_t lastModified = 0; ///< the format keeps it in local time and steps of two seconds
};

} // namespace ostrel::bundle_reader
