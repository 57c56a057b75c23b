#pragma once

#include <cstdint>
#include <string>

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

/// The stamp of the file at `path`; one that no file has when it cannot be told.
///
/// @cost  one call of the system; the file is not opened
FileStamp stampOf(const std::string& path);

} // namespace ostrel::bundle_reader
