#include "bundle_reader/BundleFile.h"

#include "bundle_reader/elf/Elf.h"
#include "bundle_reader/file/FileBytes.h"
#include "bundle_reader/zip/ZipArchive.h"
#include "bundle_reader/zip/ZipLocator.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <system_error>

namespace ostrel::bundle_reader {
namespace {

constexpr std::uint64_t fileLimit = std::uint64_t{2} << 30U;

void readArchive(std::string_view bytes, SearchIn where, std::uint64_t appendedFrom, Contents& contents)
{
    const ZipPlace place = locateZip(bytes, where, appendedFrom);
    if (place.state == ZipPlace::State::damaged) {
        contents.archive = Archive::damaged;
        contents.damage = place.damage;
    } else if (place.state == ZipPlace::State::found) {
        if (contents.format == Format::other && place.begin == 0) {
            contents.format = Format::zip;
        }
        contents.archiveBegin = place.begin;
        contents.archiveEnd = place.end;
        readZip(bytes.substr(place.begin, place.end - place.begin), contents);
    }
}

} // namespace

Contents inspect(std::string_view bytes)
{
    Contents contents;
    if (beginsLikeElf(bytes)) {
        Elf elf = readElf(bytes);
        if (elf.sharedObject) {
            contents.format = Format::elf;
            contents.truncated = elf.truncated;
            contents.damage = std::move(elf.damage);
            contents.needed = std::move(elf.needed);
            if (!contents.truncated) {
                readArchive(bytes, SearchIn::everywhere, elf.end, contents);
            }
            return contents;
        }
    }
    if (beginsLikeZip(bytes)) {
        contents.format = Format::zip;
    }
    readArchive(bytes, contents.format == Format::zip ? SearchIn::everywhere : SearchIn::end, 0, contents);
    return contents;
}

Contents read(const std::string& path)
{
    const FileBytes file{path};
    const std::string head = file.read(0, 4);
    const std::uint64_t tailSize = std::min<std::uint64_t>(file.size(), endRecordLimit);
    if (!beginsLikeElf(head) && !beginsLikeZip(head) && !endsLikeZip(file.read(file.size() - tailSize, tailSize))) {
        return {};
    }
    if (file.size() > fileLimit) {
        throw std::system_error{EFBIG, std::generic_category(), "cannot read '" + path + "'"};
    }
    Contents contents = inspect(file.read(0, file.size()));
    contents.stamp = file.stamp();
    return contents;
}

} // namespace ostrel::bundle_reader
