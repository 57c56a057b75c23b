#pragma once

#include "inspection/Finding.h"
#include "inspection/Vocabulary.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::inspection {

enum class FileKind {
    library, ///< an ELF shared object
    archive, ///< a bare zip archive
    other,
};

/// "library", "archive", "other".
OSTREL_INSPECTION_EXPORT std::string_view toText(FileKind kind);

/// A bundle as its file has it. Nothing of it is installed.
struct InspectedBundle {
    std::string symbolicName;
    std::optional<std::string> version;       ///< as frameworks write it; none when it is no version
    std::optional<std::string> componentName; ///< none when the container could not start it
    bool activator = false;                   ///< its manifest asks for one
    std::string filters;                      ///< its declaration in JSON, in one line; "" when there is none
    std::string headers;                      ///< the manifest as frameworks take it, in JSON
    std::vector<std::string> resources;       ///< files in its folder beside the manifest, in the order of the archive
};

/// What a file is and holds, without running code of it.
struct InspectedFile {
    std::string file;
    FileKind kind = FileKind::other;
    std::optional<std::string> framework; ///< that it was built for: "embedded" or "installed"
    std::vector<InspectedBundle> bundles; ///< those whose manifest can be read
    std::vector<std::string> needed;      ///< libraries, as the file names them
    std::string why;                      ///< why it is no bundle; "" when it is one
    std::optional<Finding> fault;         ///< the same for what ought to be one; none of a file that is passed over
};

struct Inspection {
    std::vector<InspectedFile> files;
    bool isDirectory = false;
    Vocabulary vocabulary; ///< of all declarations
};

/// Looks into one file, which is to be a bundle.
///
/// @throws std::bad_alloc
/// @locks  none
/// @cost   reads headers, archive's directory and manifests, however large the file is
OSTREL_INSPECTION_EXPORT Inspection inspectFile(const std::string& path);

/// Looks into each file of a directory, shown as `directory`/name.
///
/// @throws std::system_error with its name when the directory cannot be listed; std::bad_alloc
OSTREL_INSPECTION_EXPORT Inspection inspectDirectory(const std::string& directory);

/// In lines, for people: escaped, so that no text of a file can pass for another line.
OSTREL_INSPECTION_EXPORT std::string toText(const Inspection& inspection);

/// ostrel.inspection/1.
/// @param tool  who writes, with its version
OSTREL_INSPECTION_EXPORT std::string toJson(const Inspection& inspection, std::string_view tool);

} // namespace ostrel::inspection
