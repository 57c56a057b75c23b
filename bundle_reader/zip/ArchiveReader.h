#pragma once

#include "bundle_reader/BundleFile.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace ostrel::bundle_reader {

/// An entry of more bytes is not unpacked.
inline constexpr std::size_t entryLimit = std::size_t{1} << 30;

/// The archive of a bundle file, open for reading its entries one by one.
///
/// The file stays open, so that removing or replacing it changes nothing here. All functions may be called from any
/// thread.
class ArchiveReader {
public:
    /// What the archive's directory says; none of it is proven before the entry is read.
    struct Entry {
        std::string name;             ///< bytes as in the archive; a folder's ends in '/'
        std::uint64_t size = 0;       ///< unpacked
        std::uint64_t packedSize = 0; ///< in the archive
        std::uint32_t crc = 0;        ///< CRC-32 of the unpacked data
        std::time_t lastModified = 0; ///< the format keeps it in local time and steps of two seconds
    };

    /// Opens the file whose contents read() has told, and reads the directory of its archive.
    ///
    /// @throws std::runtime_error with the file's name when it cannot be opened, is no longer the one that was read,
    ///         or its archive cannot be read
    ArchiveReader(std::string path, const Contents& contents);
    ArchiveReader(const ArchiveReader&) = delete;
    ArchiveReader& operator=(const ArchiveReader&) = delete;
    ~ArchiveReader();

    /// In the order of the directory.
    const std::vector<Entry>& entries() const { return m_entries; }

    /// The unpacked data of the entry at that place of entries().
    ///
    /// @throws std::runtime_error with the names of entry and file when the data are damaged, have not the size that
    ///         the directory says, are more than entryLimit, are packed or encrypted in a way that cannot be read, or
    ///         when the file was written to meanwhile
    /// @locks  one for the file; entries of one file are read one after the other
    /// @cost   memory for what is really there, whatever size the directory says
    std::string read(std::size_t entry) const;

private:
    struct Handle;

    const std::string m_path;
    const FileStamp m_stamp;
    mutable std::mutex m_mutex; // guards what m_handle leads to
    std::unique_ptr<Handle> m_handle;
    std::vector<Entry> m_entries;
};

} // namespace ostrel::bundle_reader
