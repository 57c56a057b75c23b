#pragma once

#include "bundle_reader/file/ByteSource.h"

#include <cstdint>
#include <optional>
#include <string>

namespace ostrel::bundle_reader {

/// An archive's end record, and where the archive lies by it.
struct ZipEnd {
    std::uint64_t entries = 0;
    std::uint64_t begin = 0; ///< the archive's first byte, to which the offsets in it are relative
    std::uint64_t directory = 0;
    std::uint64_t position = 0; ///< of the end record
    std::uint64_t end = 0;      ///< behind the archive's comment
};

/// The position of the end record, whether or not it makes sense, that ends at `end` with its comment, from `begin` on.
///
/// @cost  the last 64 KiB are read at most; 22 bytes when there is no comment
std::optional<std::uint64_t> endRecordBefore(const ByteSource& source, std::uint64_t begin, std::uint64_t end);

/// The end record at `position`, if it and the start of the directory that it names make sense.
std::optional<ZipEnd> endRecordAt(const ByteSource& source, std::uint64_t position);

/// Walks the directory; the text says what is wrong with it, empty when nothing is.
///
/// @cost  the directory is read, and the header of each entry
std::string faultOf(const ByteSource& source, const ZipEnd& archive);

/// Whether the end record at `position` has a longer one before it, which archives above the format's bounds need.
bool isWide(const ByteSource& source, std::uint64_t position);

/// The last complete archive whose end record begins within the last 64 KiB before `end`, from `begin` on. Empty ones
/// do not count: 22 bytes prove nothing.
std::optional<ZipEnd> lastArchive(const ByteSource& source, std::uint64_t begin, std::uint64_t end);

/// The complete archive that begins at the source's beginning, whatever follows it. One whose entries do not tell their
/// sizes in front of the data is not found.
///
/// @cost  the header of each entry is read, then the directory
std::optional<ZipEnd> archiveAtBeginning(const ByteSource& source);

/// Whether an entry begins at `at`: a header that makes sense, and not just its mark.
///
/// @param ofManifest  its name must end in "/manifest.json"
bool isEntry(const ByteSource& source, std::uint64_t at, bool ofManifest);

/// Whether an entry begins within the first 64 KiB from `begin` on, before `end`.
bool holdsEntry(const ByteSource& source, std::uint64_t begin, std::uint64_t end, bool ofManifest);

} // namespace ostrel::bundle_reader
