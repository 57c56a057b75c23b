#include "bundle_reader/zip/ZipArchive.h"

#include <zip.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <new>
#include <strings.h>
#include <utility>

namespace ostrel::bundle_reader {
namespace {

constexpr std::size_t allManifestsLimit = 4 * manifestLimit;
constexpr zip_int64_t entryLimit = 0xffff;

/// The case of the file's name does not matter to the framework.
bool isManifest(const std::string& name)
{
    return ::strcasecmp(name.c_str(), "manifest.json") == 0;
}

struct CloseArchive {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
struct CloseEntry {
    void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};
using ZipHandle = std::unique_ptr<zip_t, CloseArchive>;
using EntryHandle = std::unique_ptr<zip_file_t, CloseEntry>;

/// Thrown within this file only; what() would be the reason.
struct Damage {
    std::string why;
};

ZipHandle open(std::string_view bytes)
{
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
    zip_t* archive = source == nullptr ? nullptr : zip_open_from_source(source, ZIP_RDONLY, &error);
    if (archive == nullptr) {
        zip_source_free(source);
        const bool noMemory = zip_error_code_zip(&error) == ZIP_ER_MEMORY;
        std::string why = zip_error_strerror(&error);
        zip_error_fini(&error);
        if (noMemory) {
            throw std::bad_alloc{};
        }
        throw Damage{std::move(why)};
    }
    zip_error_fini(&error);
    return ZipHandle{archive};
}

std::string readManifest(zip_t* archive, zip_uint64_t index, const std::string& entryName, std::size_t limit)
{
    const auto tooLong = [&] {
        return Damage{"the manifest '" + entryName + "' is larger than a manifest may be, " +
                      std::to_string(manifestLimit >> 20U) + " MiB, or all of them together than four times that"};
    };
    zip_stat_t status;
    if (zip_stat_index(archive, index, 0, &status) != 0 || (status.valid & ZIP_STAT_SIZE) == 0) {
        throw Damage{"the size of '" + entryName + "' is unknown"};
    }
    if (status.size > limit) {
        throw tooLong();
    }
    const EntryHandle entry{zip_fopen_index(archive, index, 0)};
    if (!entry) {
        throw Damage{"'" + entryName + "' cannot be read: " + zip_strerror(archive)};
    }
    std::string text;
    std::array<char, 8192> part;
    for (;;) {
        const zip_int64_t count = zip_fread(entry.get(), part.data(), part.size());
        if (count < 0) {
            throw Damage{"'" + entryName + "' cannot be read: " + zip_error_strerror(zip_file_get_error(entry.get()))};
        }
        if (count == 0) {
            break;
        }
        text.append(part.data(), static_cast<std::size_t>(count));
        if (text.size() > limit) {
            throw tooLong();
        }
    }
    if (text.size() != status.size) {
        throw Damage{"'" + entryName + "' has not the size that the directory says"};
    }
    return text;
}

void readFolders(std::string_view bytes, Contents& contents)
{
    const ZipHandle archive = open(bytes);
    const zip_int64_t entries = zip_get_num_entries(archive.get(), 0);
    if (entries > entryLimit) {
        throw Damage{"it has more than " + std::to_string(entryLimit) + " entries"};
    }
    std::map<std::string, std::optional<std::string>> folders;
    std::size_t allManifests = 0;
    for (zip_uint64_t index = 0; index < static_cast<zip_uint64_t>(entries); ++index) {
        const char* rawName = zip_get_name(archive.get(), index, ZIP_FL_ENC_RAW);
        if (rawName == nullptr) {
            throw Damage{"an entry has no name"};
        }
        const std::string name{rawName};
        const auto slash = name.find('/');
        if (slash == std::string::npos) {
            contents.rootManifest = contents.rootManifest || isManifest(name);
            continue;
        }
        auto& manifest = folders[name.substr(0, slash)];
        if (!isManifest(name.substr(slash + 1))) {
            contents.moreFiles = contents.moreFiles || name.back() != '/';
        } else if (!manifest) {
            manifest =
                readManifest(archive.get(), index, name, std::min(manifestLimit, allManifestsLimit - allManifests));
            allManifests += manifest->size();
        }
    }
    for (auto& [name, manifest] : folders) {
        contents.folders.push_back({name, std::move(manifest)});
    }
}

} // namespace

void readZip(std::string_view bytes, Contents& contents)
{
    try {
        readFolders(bytes, contents);
        contents.archive = Archive::readable;
    } catch (Damage& damage) {
        contents.archive = Archive::damaged;
        contents.damage = std::move(damage.why);
        contents.rootManifest = false;
        contents.moreFiles = false;
        contents.folders.clear();
    }
}

} // namespace ostrel::bundle_reader
