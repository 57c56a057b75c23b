#include "bundle_reader/BundleFile.h"

#include "bundle_reader/elf/Elf.h"
#include "bundle_reader/file/FileBytes.h"
#include "bundle_reader/zip/ZipLocator.h"

#include <utility>

namespace ostrel::bundle_reader {
namespace {

constexpr std::size_t smallFile = 65536;

void readArchive(const ByteSource& source, const ZipPlaces& places, Contents& contents)
{
    const ZipPlace place = locateZip(source, places);
    if (place.state == ZipPlace::State::damaged) {
        contents.archive = Archive::damaged;
        contents.damage = place.damage;
    }
    if (place.state != ZipPlace::State::found) {
        return;
    }
    if (contents.format == Format::other && place.begin == 0) {
        contents.format = Format::zip;
    }
    contents.place.begin = place.begin;
    contents.place.end = place.end;
    Folders folders;
    if (const std::uint64_t size = place.end - place.begin; size <= smallArchive) {
        auto kept = std::make_shared<const KeptBytes>(source.text(place.begin, static_cast<std::size_t>(size)));
        folders = readFolders(*kept, 0, kept->size());
        contents.place.kept = std::move(kept);
    } else {
        folders = readFolders(source, place.begin, place.end);
    }
    if (!folders.damage.empty()) {
        contents.archive = Archive::damaged;
        contents.damage = std::move(folders.damage);
        contents.place = {};
        return;
    }
    contents.archive = Archive::readable;
    contents.rootManifest = folders.rootManifest;
    contents.moreFiles = folders.moreFiles;
    contents.folders = std::move(folders.folders);
}

/// Reads the headers of a shared object, and tells in which places it may hold an archive.
/// @return  false when the source is no shared object
bool readShared(const ByteSource& source, Contents& contents, ZipPlaces& places)
{
    if (!beginsLikeElf(source.text(0, 4))) {
        return false;
    }
    Elf elf = readElf(source);
    if (!elf.sharedObject) {
        return false;
    }
    contents.format = Format::elf;
    contents.truncated = elf.truncated;
    contents.damage = std::move(elf.damage);
    contents.needed = std::move(elf.needed);
    places.appended = true;
    places.appendedFrom = elf.end;
    for (const Extent& section : elf.archiveSections) {
        places.sections.emplace_back(section.offset, section.offset + section.size);
    }
    return true;
}

Contents inspect(const ByteSource& source)
{
    Contents contents;
    ZipPlaces places;
    if (!readShared(source, contents, places) && beginsLikeZip(source.text(0, 4))) {
        contents.format = Format::zip;
        places.atBeginning = true;
        places.appended = true;
    }
    if (!contents.truncated) {
        readArchive(source, places, contents);
    }
    return contents;
}

} // namespace

Contents inspect(std::string_view bytes)
{
    return inspect(MemoryBytes{bytes});
}

Contents read(const std::string& path)
{
    const FileBytes file{path};
    // A small file is read in one go, as each call of the system costs more than a few pages.
    Contents contents = file.size() <= smallFile ? inspect(KeptBytes{file.text(0, smallFile)}) : inspect(file);
    contents.place.stamp = file.stamp();
    contents.reachedWithoutLinks = file.reachedWithoutLinks();
    return contents;
}

Contents readHeaders(const std::string& path)
{
    const FileBytes file{path};
    Contents contents;
    ZipPlaces unused;
    readShared(file, contents, unused);
    contents.place.stamp = file.stamp();
    return contents;
}

bool endsWithArchive(const std::string& path)
{
    return endsLikeZip(FileBytes{path});
}

} // namespace ostrel::bundle_reader
