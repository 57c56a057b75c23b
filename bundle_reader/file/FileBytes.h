#pragma once

#include "bundle_reader/file/ByteSource.h"
#include "bundle_reader/file/FileStamp.h"

#include <cstdint>
#include <string>

namespace ostrel::bundle_reader {

/// A regular file that is open for reading. Bytes are copied rather than mapped: a file that somebody shortens
/// meanwhile then reads as a short one and does not end the process.
class FileBytes : public ByteSource {
public:
    /// @throws std::system_error with `path` when it cannot be opened or is no regular file
    explicit FileBytes(const std::string& path);
    ~FileBytes() override;

    std::uint64_t size() const override { return m_stamp.size; }
    /// When it was opened.
    const FileStamp& stamp() const { return m_stamp; }
    /// Whether it is certain that no part of the path is a symbolic link; the system cannot tell where the kernel is
    /// older than 5.6, and in some sandboxes.
    bool reachedWithoutLinks() const { return m_reachedWithoutLinks; }
    /// Now: another one when the file was written to meanwhile.
    FileStamp stampNow() const;

    /// @throws std::system_error with the file's path
    std::size_t read(std::uint64_t offset, char* to, std::size_t length) const override;

private:
    std::string m_path;
    bool m_reachedWithoutLinks = false;
    int m_descriptor = -1;
    FileStamp m_stamp;
};

} // namespace ostrel::bundle_reader
