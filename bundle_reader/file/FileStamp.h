#pragma once

#include <cstdint>

namespace ostrel::bundle_reader {

/// Which file it was, and in which state: equal as long as the file was neither replaced nor written to. Renaming or
/// removing it changes nothing.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t size = 0;
    std::int64_t seconds = 0; ///< of the last modification
    std::int64_t nanoseconds = 0;

    bool operator==(const FileStamp& other) const
    {
        return device == other.device && inode == other.inode && size == other.size && seconds == other.seconds &&
               nanoseconds == other.nanoseconds;
    }
    bool operator!=(const FileStamp& other) const { return !(*this == other); }
};

} // namespace ostrel::bundle_reader
