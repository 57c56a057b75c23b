#pragma once

#include <zip.h>

#include <ctime>
#include <list>
#include <memory>
#include <optional>
#include <set>
#include <string>

/// Makes a zip archive in memory. Its bytes depend on nothing but what is added, so that a build can be repeated.
///
/// All functions throw std::runtime_error with the entry's or file's name.
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

    bool empty() const { return m_names.empty(); }

    /// The bytes of the archive; nothing can be added any more.
    std::string finish();

private:
    struct Discard {
        void operator()(zip_t* archive) const { zip_discard(archive); }
    };
    struct Free {
        void operator()(zip_source_t* source) const { zip_source_free(source); }
    };

    void claim(const std::string& name, const char* complaint);
    [[noreturn]] void fail(const std::string& name) const;

    std::unique_ptr<zip_source_t, Free> m_target;
    std::list<std::string> m_bytes;                              // to which the archive refers until it is closed
    std::list<std::unique_ptr<zip_t, Discard>> m_mergedArchives; // likewise
    std::unique_ptr<zip_t, Discard> m_archive;
    std::set<std::string> m_names;
};

/// All bytes of a file.
/// @throws std::runtime_error with `what` and the file's name
std::string readFile(const std::string& path, const std::string& what);
