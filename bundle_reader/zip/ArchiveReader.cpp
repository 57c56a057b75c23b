#include "bundle_reader/zip/ArchiveReader.h"

#include "bundle_reader/file/FileBytes.h"

#include <zip.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <stdexcept>
#include <unistd.h>
#include <utility>

namespace ostrel::bundle_reader {
namespace {

[[noreturn]] void fail(const std::string& path, const std::string& why)
{
    throw std::runtime_error{"cannot read the archive in '" + path + "': " + why};
}

constexpr const char* changed = "the file was removed, replaced or changed since it was first read";

/// The text of libzip's error.
/// @throws std::bad_alloc when that is the error
std::string take(zip_error_t& error)
{
    const bool noMemory = zip_error_code_zip(&error) == ZIP_ER_MEMORY;
    std::string why = zip_error_strerror(&error);
    zip_error_fini(&error);
    if (noMemory) {
        throw std::bad_alloc{};
    }
    return why;
}

struct CloseEntry {
    void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};

} // namespace

struct ArchiveReader::Handle {
    Handle(const std::string& path, const Contents& contents);
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { zip_discard(archive); }

    int descriptor = -1; // belongs to the archive's stream
    zip_t* archive = nullptr;
};

ArchiveReader::Handle::Handle(const std::string& path, const Contents& contents)
{
    // Non-blocking, as a pipe may stand in the file's place by now.
    descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        fail(path, errno == ENOENT ? std::string{changed} : std::string{std::strerror(errno)});
    }
    std::FILE* const stream = ::fdopen(descriptor, "rb");
    if (stream == nullptr) {
        const int error = errno;
        ::close(descriptor);
        fail(path, std::strerror(error));
    }
    if (stampOf(descriptor) != contents.stamp) {
        std::fclose(stream);
        fail(path, changed);
    }
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* const source = zip_source_filep_create(
        stream, contents.archiveBegin, static_cast<zip_int64_t>(contents.archiveEnd - contents.archiveBegin), &error);
    if (source == nullptr) {
        std::fclose(stream);
        fail(path, take(error));
    }
    archive = zip_open_from_source(source, ZIP_RDONLY, &error);
    if (archive == nullptr) {
        zip_source_free(source);
        fail(path, take(error));
    }
    zip_error_fini(&error);
}

ArchiveReader::ArchiveReader(std::string path, const Contents& contents)
    : m_path{std::move(path)}, m_stamp{contents.stamp}, m_handle{std::make_unique<Handle>(m_path, contents)}
{
    zip_t* const archive = m_handle->archive;
    const zip_int64_t count = zip_get_num_entries(archive, 0);
    for (zip_int64_t index = 0; index < count; ++index) {
        zip_stat_t status;
        const char* const name = zip_get_name(archive, static_cast<zip_uint64_t>(index), ZIP_FL_ENC_RAW);
        if (name == nullptr || zip_stat_index(archive, static_cast<zip_uint64_t>(index), 0, &status) != 0) {
            fail(m_path, zip_strerror(archive));
        }
        m_entries.push_back({name, status.size, status.comp_size, status.crc, status.mtime});
    }
}

ArchiveReader::~ArchiveReader() = default;

std::string ArchiveReader::read(std::size_t entry) const
{
    const Entry& expected = m_entries.at(entry);
    const auto failEntry = [&](const std::string& why) { fail(m_path, "'" + expected.name + "': " + why); };
    if (expected.size > entryLimit) {
        failEntry("it is larger than an entry may be, " + std::to_string(entryLimit >> 20U) + " MiB");
    }
    const std::lock_guard<std::mutex> lock{m_mutex};
    if (stampOf(m_handle->descriptor) != m_stamp) {
        failEntry(changed);
    }
    const std::unique_ptr<zip_file_t, CloseEntry> file{
        zip_fopen_index(m_handle->archive, static_cast<zip_uint64_t>(entry), 0)};
    if (!file) {
        failEntry(zip_strerror(m_handle->archive));
    }
    std::string data;
    std::array<char, 65536> part;
    for (;;) {
        const zip_int64_t count = zip_fread(file.get(), part.data(), part.size());
        if (count < 0) {
            failEntry(zip_error_strerror(zip_file_get_error(file.get())));
        }
        if (count == 0) {
            break;
        }
        data.append(part.data(), static_cast<std::size_t>(count));
        if (data.size() > expected.size) {
            break;
        }
    }
    if (data.size() != expected.size) {
        failEntry("it has not the size that the directory says");
    }
    return data;
}

} // namespace ostrel::bundle_reader
