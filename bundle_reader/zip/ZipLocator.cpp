#include "bundle_reader/zip/ZipLocator.h"

#include "bundle_reader/file/ByteView.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <utility>

namespace ostrel::bundle_reader {
namespace {

constexpr std::string_view entryMark{"PK\x03\x04"};
constexpr std::string_view directoryMark{"PK\x01\x02"};
constexpr std::string_view endMark{"PK\x05\x06"};
constexpr std::string_view wideLocatorMark{"PK\x06\x07"};
constexpr std::size_t wideLocatorSize = 20;
constexpr std::size_t entrySize = 30;
constexpr std::size_t directoryEntrySize = 46;
constexpr std::size_t endRecordSize = 22;
// Each check of a directory walks it; a file made of end records must not cost the square of its size.
constexpr int directoryChecks = 64;

std::uint64_t number(std::string_view bytes, std::uint64_t offset, std::size_t width)
{
    return numberAt(bytes, offset, width, ByteOrder::little);
}

bool hasMark(std::string_view bytes, std::uint64_t offset, std::string_view mark)
{
    return fits(bytes.size(), offset, mark.size()) && bytes.substr(offset, mark.size()) == mark;
}

/// The last place before `before` where the mark of an end record stands; npos if none.
std::size_t lastEndMark(std::string_view bytes, std::size_t before)
{
    constexpr std::size_t window = 4096; // tools that check memory accesses check a whole searched range on each call
    while (before != 0) {
        const std::size_t from = before - std::min(before, window);
        const void* found = ::memrchr(bytes.data() + from, endMark.front(), before - from);
        before = found == nullptr ? from : static_cast<std::size_t>(static_cast<const char*>(found) - bytes.data());
        if (found != nullptr && hasMark(bytes, before, endMark)) {
            return before;
        }
    }
    return std::string_view::npos;
}

struct EndRecord {
    std::uint64_t entries;
    std::uint64_t begin, directory, position, end; // offsets in the file
};

/// The end record at `position`, if it and the start of the directory that it names make sense.
std::optional<EndRecord> endRecordAt(std::string_view bytes, std::uint64_t position)
{
    if (!hasMark(bytes, position, endMark) || !fits(bytes.size(), position, endRecordSize)) {
        return std::nullopt;
    }
    const std::uint64_t entries = number(bytes, position + 10, 2);
    const std::uint64_t directorySize = number(bytes, position + 12, 4);
    const std::uint64_t directoryOffset = number(bytes, position + 16, 4);
    const std::uint64_t commentSize = number(bytes, position + 20, 2);
    const bool oneDisk = number(bytes, position + 4, 4) == 0 && number(bytes, position + 8, 2) == entries;
    if (!oneDisk || directorySize + directoryOffset > position || directorySize < entries * directoryEntrySize ||
        !fits(bytes.size(), position + endRecordSize, commentSize)) {
        return std::nullopt;
    }
    const std::uint64_t directory = position - directorySize;
    const bool plausible = entries == 0 ? directorySize == 0 : hasMark(bytes, directory, directoryMark);
    if (!plausible) {
        return std::nullopt;
    }
    return EndRecord{entries, directory - directoryOffset, directory, position, position + endRecordSize + commentSize};
}

/// Walks the directory; the text says what is wrong with it, empty when nothing is.
std::string faultOf(std::string_view bytes, const EndRecord& archive)
{
    std::uint64_t at = archive.directory;
    for (std::uint64_t entry = 0; entry < archive.entries; ++entry) {
        if (!hasMark(bytes, at, directoryMark) || !fits(archive.position, at, directoryEntrySize)) {
            return "its directory is broken";
        }
        const std::uint64_t packedSize = number(bytes, at + 20, 4);
        const std::uint64_t variable =
            number(bytes, at + 28, 2) + number(bytes, at + 30, 2) + number(bytes, at + 32, 2);
        const std::uint64_t header = archive.begin + number(bytes, at + 42, 4);
        if (!fits(archive.position, at + directoryEntrySize, variable)) {
            return "its directory is broken";
        }
        if (!hasMark(bytes, header, entryMark) || !fits(archive.directory, header, entrySize)) {
            return "an entry is not where the directory says";
        }
        const std::uint64_t data = header + entrySize + number(bytes, header + 26, 2) + number(bytes, header + 28, 2);
        if (!fits(archive.directory, data, packedSize)) {
            return "the data of an entry are cut short";
        }
        at += directoryEntrySize + variable;
    }
    return at == archive.position ? std::string{} : std::string{"its directory is broken"};
}

/// The position of the end record that ends where `bytes` end, whether or not it makes sense.
std::optional<std::uint64_t> endRecordAtEnd(std::string_view bytes)
{
    const std::size_t skipped = bytes.size() - std::min(bytes.size(), endRecordLimit);
    bytes.remove_prefix(skipped);
    for (std::size_t at = lastEndMark(bytes, bytes.size()); at != std::string_view::npos; at = lastEndMark(bytes, at)) {
        if (fits(bytes.size(), at, endRecordSize) && at + endRecordSize + number(bytes, at + 20, 2) == bytes.size()) {
            return skipped + at;
        }
    }
    return std::nullopt;
}

/// Whether the end record at `position` has a longer one before it, which archives above the format's bounds need.
bool isWide(std::string_view bytes, std::uint64_t position)
{
    return position >= wideLocatorSize && hasMark(bytes, position - wideLocatorSize, wideLocatorMark);
}

/// The last complete archive that lies anywhere in `bytes`. Empty ones do not count: 22 bytes prove nothing.
std::optional<EndRecord> lastArchive(std::string_view bytes)
{
    int checks = 0;
    for (std::size_t at = lastEndMark(bytes, bytes.size()); at != std::string_view::npos && checks < directoryChecks;
         at = lastEndMark(bytes, at)) {
        const auto archive = endRecordAt(bytes, at);
        if (archive && archive->entries != 0) {
            ++checks;
            if (faultOf(bytes, *archive).empty()) {
                return archive;
            }
        }
    }
    return std::nullopt;
}

/// Whether the bytes at `at` are the header of an entry and not just its mark.
bool isEntry(std::string_view bytes, std::uint64_t at, bool ofManifest)
{
    constexpr std::uint64_t newestVersion = 63;
    constexpr std::uint64_t highestMethod = 99;
    const std::uint64_t nameSize = number(bytes, at + 26, 2);
    if (!hasMark(bytes, at, entryMark) || !fits(bytes.size(), at + entrySize, nameSize) || nameSize == 0 ||
        number(bytes, at + 4, 2) > newestVersion || number(bytes, at + 8, 2) > highestMethod) {
        return false;
    }
    constexpr std::string_view manifest{"/manifest.json"};
    const std::string_view name = bytes.substr(at + entrySize, nameSize);
    const bool isText =
        std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x20; });
    return isText &&
           (!ofManifest || (name.size() > manifest.size() && name.substr(name.size() - manifest.size()) == manifest));
}

bool holdsEntry(std::string_view bytes, std::uint64_t from, bool ofManifest)
{
    for (std::size_t at = bytes.find(entryMark, from); at != std::string_view::npos;
         at = bytes.find(entryMark, at + 1)) {
        if (isEntry(bytes, at, ofManifest)) {
            return true;
        }
    }
    return false;
}

/// Whether an archive begins at `first`, but is no part of the one found behind it nor of complete ones between.
/// That is what is left when an archive is cut off whose entries are archives themselves.
bool isRemnant(std::string_view bytes, std::uint64_t first, std::uint64_t foundBegin)
{
    if (!hasMark(bytes, first, entryMark)) {
        return false;
    }
    while (foundBegin > first) {
        const auto position = endRecordAtEnd(bytes.substr(0, foundBegin));
        const auto before = position ? endRecordAt(bytes, *position) : std::nullopt;
        if (!before) {
            return true;
        }
        foundBegin = before->begin;
    }
    return false;
}

ZipPlace damaged(std::string why)
{
    ZipPlace place;
    place.state = ZipPlace::State::damaged;
    place.damage = std::move(why);
    return place;
}

} // namespace

bool beginsLikeZip(std::string_view bytes)
{
    return hasMark(bytes, 0, entryMark) || hasMark(bytes, 0, endMark);
}

bool endsLikeZip(std::string_view bytes)
{
    return endRecordAtEnd(bytes).has_value();
}

ZipPlace locateZip(std::string_view bytes, SearchIn where, std::uint64_t appendedFrom)
{
    const auto last = endRecordAtEnd(bytes);
    if (last && isWide(bytes, *last)) {
        return damaged("it is in the format for large archives (zip64), which is not read; an archive may have 65534 "
                       "entries and 2 GiB at most");
    }
    auto archive = last ? endRecordAt(bytes, *last) : std::nullopt;
    if (archive) {
        std::string fault = faultOf(bytes, *archive);
        if (!fault.empty()) {
            return damaged(std::move(fault));
        }
    } else if (where == SearchIn::everywhere) {
        archive = lastArchive(bytes);
    }

    if (archive && !isRemnant(bytes, appendedFrom, archive->begin)) {
        ZipPlace place;
        place.state = ZipPlace::State::found;
        place.begin = archive->begin;
        place.end = archive->end;
        return place;
    }
    if (last && !archive) {
        return damaged("its end record names a directory that is not there");
    }
    if (where == SearchIn::everywhere) {
        if (archive || beginsLikeZip(bytes) || holdsEntry(bytes, appendedFrom, false)) {
            return damaged("its end record is missing, as in a file that was cut short");
        }
        if (holdsEntry(bytes, 0, true)) {
            return damaged("it holds a manifest, but its directory is broken");
        }
    }
    return {};
}

} // namespace ostrel::bundle_reader
