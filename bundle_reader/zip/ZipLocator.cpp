#include "bundle_reader/zip/ZipLocator.h"

#include "bundle_reader/zip/ZipDirectory.h"
#include "bundle_reader/zip/ZipFormat.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace ostrel::bundle_reader {
namespace {

// So many archives in a row are told from the rest of one that was cut off; nobody appends more.
constexpr int archivesInARow = 64;

/// Whether an archive begins at `first`, but is no part of the one found behind it nor of complete ones between.
/// That is what is left when an archive is cut off whose entries are archives themselves.
bool isRemnant(const ByteSource& source, std::uint64_t first, std::uint64_t foundBegin)
{
    if (foundBegin <= first || source.text(first, zip_format::entry::mark.size()) != zip_format::entry::mark) {
        return false;
    }
    for (int archive = 0; foundBegin > first && archive < archivesInARow; ++archive) {
        const auto position = endRecordBefore(source, 0, foundBegin);
        const auto before = position ? endRecordAt(source, *position) : std::nullopt;
        if (!before) {
            return true;
        }
        foundBegin = before->begin;
    }
    return false;
}

/// The last archive that does not end where the file ends.
std::optional<ZipEnd> elsewhere(const ByteSource& source, const ZipPlaces& places)
{
    std::optional<ZipEnd> archive;
    if (places.appended) {
        archive = lastArchive(source, places.appendedFrom, source.size());
    }
    for (auto section = places.sections.rbegin(); !archive && section != places.sections.rend(); ++section) {
        archive = lastArchive(source, section->first, section->second);
    }
    if (!archive && places.atBeginning) {
        archive = archiveAtBeginning(source);
    }
    return archive;
}

ZipPlace found(const ZipEnd& archive)
{
    return {ZipPlace::State::found, archive.begin, archive.end, {}};
}

ZipPlace damaged(std::string why)
{
    return {ZipPlace::State::damaged, 0, 0, std::move(why)};
}

} // namespace

bool beginsLikeZip(std::string_view bytes)
{
    const auto begins = [bytes](std::string_view mark) { return bytes.substr(0, mark.size()) == mark; };
    return begins(zip_format::entry::mark) || begins(zip_format::end::mark);
}

bool endsLikeZip(const ByteSource& source)
{
    return endRecordBefore(source, 0, source.size()).has_value();
}

ZipPlace locateZip(const ByteSource& source, const ZipPlaces& places)
{
    const auto last = endRecordBefore(source, 0, source.size());
    if (last && isWide(source, *last)) {
        return damaged("it is in the format for large archives (zip64), which is not read; an archive may have 65534 "
                       "entries and 2 GiB at most");
    }
    auto archive = last ? endRecordAt(source, *last) : std::nullopt;
    if (archive) {
        std::string fault = faultOf(source, *archive);
        if (!fault.empty()) {
            return damaged(std::move(fault));
        }
    } else {
        archive = elsewhere(source, places);
    }

    if (archive && !isRemnant(source, places.appendedFrom, archive->begin)) {
        return found(*archive);
    }
    if (last && !archive) {
        return damaged("its end record names a directory that is not there");
    }
    if (places.appended &&
        (archive || places.atBeginning || holdsEntry(source, places.appendedFrom, source.size(), false))) {
        return damaged("its end record is missing, as in a file that was cut short");
    }
    const bool holdsManifest =
        std::any_of(places.sections.begin(), places.sections.end(), [&](const ZipPlaces::Part& section) {
            return holdsEntry(source, section.first, section.second, true);
        });
    return holdsManifest ? damaged("it holds a manifest, but its directory is broken") : ZipPlace{};
}

} // namespace ostrel::bundle_reader
