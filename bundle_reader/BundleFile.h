#pragma once

#include "bundle_reader/file/FileStamp.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Reading bundle files without running any of their code.
///
/// The embedded framework and installBundles() both need to know what a file holds before anything of it is loaded:
/// its kind, the libraries that it needs, and the manifests in its archive. This small static library is the one place
/// that knows; it depends on nothing of the project.
namespace ostrel::bundle_reader {

enum class Format {
    other, ///< neither of the two below: text, an image, an empty file, an ELF file that is no shared object …
    zip,   ///< a bare zip archive, whole or damaged
    elf,   ///< an ELF shared object, with or without an archive
};

enum class Archive {
    none,     ///< the file holds no zip archive
    readable, ///< `folders` tells what is in it
    damaged,  ///< there is one, but it cannot be read; `damage` says why
};

/// One top folder of the archive, that is one bundle; so is a folder that holds nothing.
struct Folder {
    std::string name;                    ///< bytes as in the archive; the bundle's symbolic name
    std::optional<std::string> manifest; ///< bytes of `<name>/manifest.json` (in any case); nothing when there is none
};

/// What one file holds.
struct Contents {
    Format format = Format::other;
    bool truncated = false;          ///< ELF: the headers promise more than the file has; its archive is not looked for
    std::vector<std::string> needed; ///< ELF: DT_NEEDED names, in file order
    Archive archive = Archive::none;
    std::string damage;             ///< why, when `truncated` or `Archive::damaged`
    bool rootManifest = false;      ///< the archive has a manifest.json outside of any folder
    bool moreFiles = false;         ///< the folders hold other files than their manifests
    std::vector<Folder> folders;    ///< in ascending byte order of name; empty unless `Archive::readable`
    std::uint64_t archiveBegin = 0; ///< where a readable archive lies in the file
    std::uint64_t archiveEnd = 0;
    FileStamp stamp; ///< of the file; only read() knows it
};

/// A manifest of more bytes counts as damage, as do all manifests of one file together above four times as many.
inline constexpr std::size_t manifestLimit = std::size_t{16} << 20;

/// Reads the file at `path` (bytes, as the file system has them).
///
/// The archive is found wherever it lies: at the end of the file (whatever the file is), as a part of a shared object,
/// or as the whole file. The directory of the archive is checked in full; of the data only the manifests are.
///
/// @throws std::system_error with the file's name when it cannot be opened or read, is no regular file, or is a
///         shared object or archive of more than 2 GiB.
/// @locks  none
/// @cost   reads the file into memory; of one that is neither a shared object nor an archive only the ends.
Contents read(const std::string& path);

/// What `Contents::stamp` would be if the file were read now; one that no file has when it cannot be told.
///
/// @cost  one call of the system; the file is not opened
FileStamp stampOf(const std::string& path);

/// As read(), for the bytes of a file in memory. Any bytes will do.
///
/// @throws std::bad_alloc and nothing else
/// @locks  none
Contents inspect(std::string_view bytes);

} // namespace ostrel::bundle_reader
