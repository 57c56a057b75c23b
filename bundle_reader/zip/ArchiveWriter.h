#pragma once

#include <ctime>
#include <memory>
#include <optional>
#include <string>

namespace ostrel::bundle_reader {

/// Makes a zip archive in memory. Its bytes depend on nothing but what is added, so that a build can be repeated.
///
/// All functions throw std::runtime_error with the entry's or file's name, or std::bad_alloc.
class ArchiveWriter {
public:
    ArchiveWriter();
    ArchiveWriter(const ArchiveWriter&) = delete;
    ArchiveWriter& operator=(const ArchiveWriter&) = delete;
    ~ArchiveWriter();

    /// Adds a folder, unless it is there; its name ends in a slash.
    void addFolder(const std::string& name);

    /// Adds a file, and the folders in which it lies.
    ///
    /// @param level     0 stores the bytes as they are, 1 to 9 pack them
    /// @param modified  none: the earliest time that the format knows
    void addFile(const std::string& name, std::string bytes, int level, std::optional<std::time_t> modified);

    /// Adds all entries of another archive.
    void merge(const std::string& path);

    /// The bytes of the archive; nothing can be added any more.
    std::string finish();

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace ostrel::bundle_reader
