#pragma once

#include "bundle_reader/file/ByteSource.h"
#include "bundle_reader/file/FileStamp.h"
#include "bundle_reader/zip/ZipEntry.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace ostrel::bundle_reader {

/// An entry of more bytes is not unpacked.
inline constexpr std::size_t entryLimit = std::size_t{1} << 30;

/// An archive of at most so many bytes is kept in memory, as it is.
inline constexpr std::size_t smallArchive = 65536;

/// Where an archive is, once its file was read.
struct ArchivePlace {
    std::uint64_t begin = 0; ///< in the file
    std::uint64_t end = 0;
    FileStamp stamp;                        ///< of the file
    std::shared_ptr<const ByteSource> kept; ///< the archive alone, when it is a small one; else null
};

/// An archive whose bytes can be read, whatever became of its file's name.
struct OpenArchive {
    std::string path; ///< for messages
    std::shared_ptr<const ByteSource> bytes;
    std::uint64_t begin = 0; ///< in the bytes
    std::uint64_t end = 0;
};

/// Opens the file of an archive that is not kept in memory; it is closed again when many others are read. While it is
/// open it may be removed or replaced.
///
/// @param path  independent of the current folder
/// @throws std::runtime_error with the file's name when it cannot be opened, or is no longer the one of the stamp
OpenArchive openArchive(const std::string& path, const ArchivePlace& place);

class ZipReader;

/// Reads the entries of an archive one by one. All functions may be called from any thread.
class ArchiveReader {
public:
    using Entry = ZipEntry;

    /// Reads the directory.
    ///
    /// @throws std::runtime_error with the file's name when the archive cannot be read, or the file is gone
    explicit ArchiveReader(OpenArchive archive);
    ArchiveReader(const ArchiveReader&) = delete;
    ArchiveReader& operator=(const ArchiveReader&) = delete;
    ~ArchiveReader();

    /// In the order of the directory.
    const std::vector<Entry>& entries() const { return m_entries; }

    /// The unpacked data of the entry at that place of entries().
    ///
    /// @throws std::runtime_error with the names of entry and file when the data are damaged, have not the size that
    ///         the directory says, are more than entryLimit, are packed or encrypted in a way that cannot be read, or
    ///         when the file was written to meanwhile or is gone; std::bad_alloc
    /// @locks  one for the archive; its entries are read one after the other
    /// @cost   memory for what is really there, whatever size the directory says
    std::string read(std::size_t entry) const;

private:
    const OpenArchive m_archive;
    mutable std::mutex m_mutex; // guards what m_reader leads to
    std::unique_ptr<const ZipReader> m_reader;
    std::vector<Entry> m_entries;
};

} // namespace ostrel::bundle_reader
