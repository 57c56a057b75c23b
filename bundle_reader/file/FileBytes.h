#pragma once

#include "bundle_reader/file/FileStamp.h"

#include <cstdint>
#include <string>

namespace ostrel::bundle_reader {

/// The stamp of an open file; one that no file has when it cannot be told.
FileStamp stampOf(int descriptor);

/// A regular file that is open for reading. Bytes are copied rather than mapped: a file that somebody shortens
/// meanwhile then reads as a short one and does not end the process.
class FileBytes {
public:
    /// @throws std::system_error with `path` when it cannot be opened or is no regular file
    explicit FileBytes(const std::string& path);
    ~FileBytes();
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;

    /// The size when it was opened, in bytes.
    std::uint64_t size() const { return m_stamp.size; }
    /// When it was opened.
    const FileStamp& stamp() const { return m_stamp; }

    /// At most `length` bytes from `offset` on; fewer where the file ends.
    /// @throws std::system_error with the file's path
    std::string read(std::uint64_t offset, std::uint64_t length) const;

private:
    std::string m_path;
    int m_descriptor = -1;
    FileStamp m_stamp;
};

} // namespace ostrel::bundle_reader
