#include "bundle_reader/zip/ZipDirectory.h"

#include "bundle_reader/zip/ZipFormat.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace ostrel::bundle_reader {
namespace {

namespace format = zip_format;
using format::number;

// Each check of a directory walks it; a file made of end records must not cost the square of its size.
constexpr int directoryChecks = 64;
constexpr std::uint64_t searched = format::end::longest;

/// The last place before `before` where the mark of an end record stands; npos if none.
std::size_t lastEndMark(std::string_view bytes, std::size_t before)
{
    constexpr std::string_view mark = format::end::mark;
    constexpr std::size_t window = 4096; // tools that check memory accesses check a whole searched range on each call
    while (before != 0) {
        const std::size_t from = before - std::min(before, window);
        const void* found = ::memrchr(bytes.data() + from, mark.front(), before - from);
        before = found == nullptr ? from : static_cast<std::size_t>(static_cast<const char*>(found) - bytes.data());
        if (found != nullptr && bytes.substr(before, mark.size()) == mark) {
            return before;
        }
    }
    return std::string_view::npos;
}

bool hasMark(const ByteSource& source, std::uint64_t offset, std::string_view mark)
{
    return ByteWindow{source, mark.size()}.holds(offset, mark);
}

/// The end of the source from `begin` to `end`, of no more bytes than an end record may have.
struct Tail {
    Tail(const ByteSource& source, std::uint64_t begin, std::uint64_t end)
        : offset{end - std::min(end - begin, searched)},
          bytes{source.text(offset, static_cast<std::size_t>(end - offset))}
    {
    }
    std::uint64_t offset;
    std::string bytes;
};

} // namespace

std::optional<std::uint64_t> endRecordBefore(const ByteSource& source, std::uint64_t begin, std::uint64_t end)
{
    if (end - begin < format::end::size) {
        return std::nullopt;
    }
    // Most have no comment, and then a few bytes are enough.
    if (const std::uint64_t shortest = end - format::end::size; hasMark(source, shortest, format::end::mark)) {
        ByteWindow record{source, format::end::size};
        if (number(record, shortest, format::end::commentSize) == 0) {
            return shortest;
        }
    }
    const Tail tail{source, begin, end};
    const std::string_view bytes{tail.bytes};
    for (std::size_t at = lastEndMark(bytes, bytes.size()); at != std::string_view::npos; at = lastEndMark(bytes, at)) {
        if (fits(bytes.size(), at, format::end::size) &&
            at + format::end::size +
                    numberAt(bytes, at + format::end::commentSize.offset, format::end::commentSize.size,
                             ByteOrder::little) ==
                bytes.size()) {
            return tail.offset + at;
        }
    }
    return std::nullopt;
}

std::optional<ZipEnd> endRecordAt(const ByteSource& source, std::uint64_t position)
{
    ByteWindow bytes{source, format::end::size};
    if (!bytes.holds(position, format::end::mark) || !fits(bytes.size(), position, format::end::size)) {
        return std::nullopt;
    }
    const std::uint64_t entries = number(bytes, position, format::end::entries);
    const std::uint64_t directorySize = number(bytes, position, format::end::directorySize);
    const std::uint64_t directoryOffset = number(bytes, position, format::end::directoryOffset);
    const std::uint64_t commentSize = number(bytes, position, format::end::commentSize);
    const bool oneDisk = number(bytes, position, format::end::disks) == 0 &&
                         number(bytes, position, format::end::entriesOfDisk) == entries;
    if (!oneDisk || directorySize + directoryOffset > position || directorySize < entries * format::directory::size ||
        !fits(bytes.size(), position + format::end::size, commentSize)) {
        return std::nullopt;
    }
    const std::uint64_t directory = position - directorySize;
    const bool plausible = entries == 0 ? directorySize == 0 : hasMark(source, directory, format::directory::mark);
    if (!plausible) {
        return std::nullopt;
    }
    return ZipEnd{entries, directory - directoryOffset, directory, position,
                  position + format::end::size + commentSize};
}

std::string faultOf(const ByteSource& source, const ZipEnd& archive)
{
    ByteWindow records{
        source, static_cast<std::size_t>(std::clamp<std::uint64_t>(archive.position - archive.directory, 1, 65536))};
    ByteWindow header{source, format::entry::size}; // far apart, as the entries' data lie between
    std::uint64_t at = archive.directory;
    for (std::uint64_t entry = 0; entry < archive.entries; ++entry) {
        if (!records.holds(at, format::directory::mark) || !fits(archive.position, at, format::directory::size)) {
            return "its directory is broken";
        }
        const std::uint64_t packedSize = number(records, at, format::directory::packedSize);
        const std::uint64_t variable = number(records, at, format::directory::nameSize) +
                                       number(records, at, format::directory::extraSize) +
                                       number(records, at, format::directory::commentSize);
        const std::uint64_t headerAt = archive.begin + number(records, at, format::directory::entryOffset);
        if (!fits(archive.position, at + format::directory::size, variable)) {
            return "its directory is broken";
        }
        if (!header.holds(headerAt, format::entry::mark) || !fits(archive.directory, headerAt, format::entry::size)) {
            return "an entry is not where the directory says";
        }
        const std::uint64_t data = headerAt + format::entry::size + number(header, headerAt, format::entry::nameSize) +
                                   number(header, headerAt, format::entry::extraSize);
        if (!fits(archive.directory, data, packedSize)) {
            return "the data of an entry are cut short";
        }
        at += format::directory::size + variable;
    }
    return at == archive.position ? std::string{} : std::string{"its directory is broken"};
}

bool isWide(const ByteSource& source, std::uint64_t position)
{
    return position >= format::wide::size && hasMark(source, position - format::wide::size, format::wide::mark);
}

std::optional<ZipEnd> lastArchive(const ByteSource& source, std::uint64_t begin, std::uint64_t end)
{
    const Tail tail{source, begin, end};
    const std::string_view bytes{tail.bytes};
    int checks = 0;
    for (std::size_t at = lastEndMark(bytes, bytes.size()); at != std::string_view::npos && checks < directoryChecks;
         at = lastEndMark(bytes, at)) {
        const auto archive = endRecordAt(source, tail.offset + at);
        if (archive && archive->entries != 0 && archive->begin >= begin && archive->end <= end) {
            ++checks;
            if (faultOf(source, *archive).empty()) {
                return archive;
            }
        }
    }
    return std::nullopt;
}

std::optional<ZipEnd> archiveAtBeginning(const ByteSource& source)
{
    ByteWindow header{source, format::entry::size};
    std::uint64_t at = 0;
    while (header.holds(at, format::entry::mark) && fits(source.size(), at, format::entry::size)) {
        if ((number(header, at, format::entry::flags) & format::entry::sizesFollowTheData) != 0) {
            return std::nullopt;
        }
        at += format::entry::size + number(header, at, format::entry::nameSize) +
              number(header, at, format::entry::extraSize) + number(header, at, format::entry::packedSize);
    }
    ByteWindow records{source};
    while (records.holds(at, format::directory::mark) && fits(source.size(), at, format::directory::size)) {
        at += format::directory::size + number(records, at, format::directory::nameSize) +
              number(records, at, format::directory::extraSize) + number(records, at, format::directory::commentSize);
    }
    auto archive = endRecordAt(source, at);
    if (!archive || archive->entries == 0 || archive->begin != 0 || !faultOf(source, *archive).empty()) {
        return std::nullopt;
    }
    return archive;
}

bool isEntry(const ByteSource& source, std::uint64_t at, bool ofManifest)
{
    ByteWindow bytes{source, 256};
    const std::uint64_t nameSize = number(bytes, at, format::entry::nameSize);
    if (!bytes.holds(at, format::entry::mark) || !fits(bytes.size(), at + format::entry::size, nameSize) ||
        nameSize == 0 || nameSize > format::entry::longestName ||
        number(bytes, at, format::entry::neededVersion) > format::entry::newestVersion ||
        number(bytes, at, format::entry::method) > format::entry::highestMethod) {
        return false;
    }
    constexpr std::string_view manifest{"/manifest.json"};
    const std::string_view name = bytes.at(at + format::entry::size, static_cast<std::size_t>(nameSize));
    const bool isText =
        std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x20; });
    return isText &&
           (!ofManifest || (name.size() > manifest.size() && name.substr(name.size() - manifest.size()) == manifest));
}

bool holdsEntry(const ByteSource& source, std::uint64_t begin, std::uint64_t end, bool ofManifest)
{
    const std::string bytes = source.text(begin, static_cast<std::size_t>(std::min(end - begin, searched)));
    for (std::size_t at = bytes.find(format::entry::mark); at != std::string::npos;
         at = bytes.find(format::entry::mark, at + 1)) {
        if (isEntry(source, begin + at, ofManifest)) {
            return true;
        }
    }
    return false;
}

} // namespace ostrel::bundle_reader
