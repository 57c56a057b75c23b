#pragma once

#include <optional>
#include <string>
#include <vector>

/// Reading bundle files without running any of their code.
///
/// The embedded framework and installBundles() both need to know what a file holds before anything of it is loaded:
/// its kind, the libraries that it needs, and the manifests in its archive. This small static library is the one place
/// that knows; it depends on nothing of the project.
namespace ostrel::bundle_file {

enum class Format {
    other,   ///< neither of the two below: text, an image, an empty file …
    zip,     ///< a bare zip archive
    elf,     ///< an ELF shared object, with or without an archive
};

enum class Archive {
    none,      ///< the file holds no zip archive
    readable,  ///< `folders` tells what is in it
    damaged,   ///< there is one, but it cannot be read; `damage` says why
};

/// One top folder of the archive, that is one bundle.
struct Folder {
    std::string name;                     ///< bytes as in the archive; the bundle's symbolic name
    std::optional<std::string> manifest;  ///< bytes of `<name>/manifest.json`; empty when the folder has none
};

/// What one file holds.
struct Contents {
    Format format = Format::other;
    bool truncated = false;            ///< ELF: the headers promise more bytes than the file has
    std::vector<std::string> needed;   ///< ELF: DT_NEEDED names, in file order
    Archive archive = Archive::none;
    std::string damage;                ///< why, when `truncated` or `Archive::damaged`
    bool rootManifest = false;         ///< the archive has a manifest.json outside of any folder
    std::vector<Folder> folders;       ///< in ascending byte order of name
};

/// Reads the file at `path` (bytes, as the file system has them).
///
/// The archive is found wherever it lies: at the end of the file, as a section of a shared object, or as the whole file.
///
/// @throws std::system_error with the file's name when it cannot be opened, mapped or is no regular file.
Contents read(const std::string& path);

} // namespace ostrel::bundle_file
