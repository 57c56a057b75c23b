#pragma once

#include "bundle_reader/file/FileStamp.h"
#include "bundle_reader/zip/ArchiveReader.h"
#include "bundle_reader/zip/Folders.h"

#include <string>
#include <string_view>
#include <vector>

/// Reading bundle files without running any of their code.
///
/// The embedded framework and installBundles() both need to know what a file holds before anything of it is loaded:
/// its kind, the libraries that it needs, and the manifests in its archive; so do the tools that make bundles. This
/// small static library is the one place that knows; it depends on nothing of the project.
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

/// What one file holds.
struct Contents {
    Format format = Format::other;
    bool truncated = false;          ///< ELF: the headers promise more than the file has; its archive is not looked for
    std::vector<std::string> needed; ///< ELF: DT_NEEDED names, in file order
    Archive archive = Archive::none;
    std::string damage;               ///< why, when `truncated` or `Archive::damaged`
    bool rootManifest = false;        ///< the archive has a manifest.json outside of any folder
    bool moreFiles = false;           ///< the folders hold other files than their manifests
    std::vector<Folder> folders;      ///< in ascending byte order of name; empty unless `Archive::readable`
    bool reachedWithoutLinks = false; ///< it is certain that no part of the path is a symbolic link; only read() knows
    ArchivePlace place;               ///< of a readable archive; the stamp is that of the file, which only read() knows
};

/// Reads the file at `path` (bytes, as the file system has them).
///
/// The archive is found at the end of the file, whatever the file is; in the sections of a shared object into which
/// ostrel_add_bundle() and the functions of CppMicroServices link archives (.ostrel_bundle, .us_resources); or at the
/// beginning of the file. The directory of the archive is checked in full; of the data only the manifests are.
///
/// @throws std::system_error with the file's name when it cannot be opened or read, or is no regular file;
///         std::bad_alloc
/// @locks  none
/// @cost   the headers, 64 KiB at each of these places, the archive's directory and its manifests are read; a small
///         archive is read whole and kept. What else the file holds costs nothing, however large it is.
Contents read(const std::string& path);

/// As read(), but of a shared object the headers alone: no archive is looked for.
Contents readHeaders(const std::string& path);

/// As read(), for the bytes of a file in memory. Any bytes will do.
///
/// @throws std::bad_alloc and nothing else
/// @locks  none
Contents inspect(std::string_view bytes);

/// Whether the file ends with the end record of an archive. Nothing is proven by that.
///
/// @throws as read()
/// @cost   64 KiB are read at most
bool endsWithArchive(const std::string& path);

} // namespace ostrel::bundle_reader
