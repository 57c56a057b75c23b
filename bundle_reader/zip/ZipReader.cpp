#include "bundle_reader/zip/ZipReader.h"

#include "bundle_reader/zip/ZipError.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <new>
#include <utility>

namespace ostrel::bundle_reader {

/// A part of the bytes, as libzip reads it. An exception must not pass through libzip: it is kept, and thrown when
/// libzip has given up.
struct ZipReader::Source {
    Source(const ByteSource& bytes, std::uint64_t begin, std::uint64_t end) : bytes{bytes}, begin{begin}, end{end}
    {
        zip_error_init(&error);
    }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    ~Source() { zip_error_fini(&error); }

    static zip_int64_t call(void* self, void* data, zip_uint64_t length, zip_source_cmd_t command) noexcept
    {
        return static_cast<Source*>(self)->answer(data, length, command);
    }

    const ByteSource& bytes;
    const std::uint64_t begin;
    const std::uint64_t end;
    std::uint64_t position = 0;
    zip_error_t error;
    std::exception_ptr thrown;

private:
    zip_int64_t answer(void* data, zip_uint64_t length, zip_source_cmd_t command) noexcept
    {
        switch (command) {
        case ZIP_SOURCE_SUPPORTS:
            return zip_source_make_command_bitmap(ZIP_SOURCE_SUPPORTS, ZIP_SOURCE_OPEN, ZIP_SOURCE_READ,
                                                  ZIP_SOURCE_CLOSE, ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL, ZIP_SOURCE_STAT,
                                                  ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, -1);
        case ZIP_SOURCE_OPEN:
            position = 0;
            return 0;
        case ZIP_SOURCE_READ:
            return read(static_cast<char*>(data), length);
        case ZIP_SOURCE_SEEK:
            return seek(data, length);
        case ZIP_SOURCE_TELL:
            return static_cast<zip_int64_t>(position);
        case ZIP_SOURCE_STAT: {
            auto* const status = static_cast<zip_stat_t*>(data);
            zip_stat_init(status);
            status->size = end - begin;
            status->valid = ZIP_STAT_SIZE;
            return sizeof *status;
        }
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(&error, data, length);
        case ZIP_SOURCE_CLOSE:
        case ZIP_SOURCE_FREE: // the memory is the reader's
            return 0;
        default:
            zip_error_set(&error, ZIP_ER_OPNOTSUPP, 0);
            return -1;
        }
    }

    zip_int64_t read(char* to, zip_uint64_t length) noexcept
    {
        try {
            const std::size_t count =
                bytes.read(begin + position, to, static_cast<std::size_t>(std::min(length, end - begin - position)));
            position += count;
            return static_cast<zip_int64_t>(count);
        } catch (...) {
            thrown = std::current_exception();
            zip_error_set(&error, ZIP_ER_READ, EIO);
            return -1;
        }
    }

    zip_int64_t seek(void* data, zip_uint64_t length) noexcept
    {
        const zip_int64_t to = zip_source_seek_compute_offset(position, end - begin, data, length, &error);
        if (to < 0) {
            return -1;
        }
        position = static_cast<std::uint64_t>(to);
        return 0;
    }
};

void ZipReader::fail(zip_error_t* error) const
{
    if (m_source->thrown) {
        std::rethrow_exception(std::exchange(m_source->thrown, nullptr));
    }
    throw ZipFault{zipReason(*error)};
}

ZipReader::ZipReader(const ByteSource& source, std::uint64_t begin, std::uint64_t end)
    : m_source{std::make_unique<Source>(source, begin, end)}
{
    ZipError error;
    beginCall();
    zip_source_t* const zipSource = zip_source_function_create(Source::call, m_source.get(), &error.value);
    if (zipSource == nullptr) {
        fail(&error.value);
    }
    m_archive.reset(zip_open_from_source(zipSource, ZIP_RDONLY, &error.value));
    if (!m_archive) {
        zip_source_free(zipSource);
        fail(&error.value);
    }
    m_count = static_cast<std::uint64_t>(std::max<zip_int64_t>(zip_get_num_entries(m_archive.get(), 0), 0));
}

ZipReader::~ZipReader() = default;

std::string ZipReader::name(std::uint64_t index) const
{
    const char* const name = zip_get_name(m_archive.get(), index, ZIP_FL_ENC_RAW);
    if (name == nullptr) {
        throw ZipFault{"an entry has no name"};
    }
    return name;
}

ZipEntry ZipReader::entry(std::uint64_t index) const
{
    zip_stat_t status;
    beginCall();
    if (zip_stat_index(m_archive.get(), index, 0, &status) != 0) {
        fail(zip_get_error(m_archive.get()));
    }
    return {name(index), status.size, status.comp_size, status.crc, status.mtime};
}

std::string ZipReader::unpack(std::uint64_t index, std::uint64_t limit) const
{
    struct Close {
        void operator()(zip_file_t* file) const { zip_fclose(file); }
    };
    beginCall();
    const std::unique_ptr<zip_file_t, Close> file{zip_fopen_index(m_archive.get(), index, 0)};
    if (!file) {
        fail(zip_get_error(m_archive.get()));
    }
    std::string data;
    std::array<char, 65536> part;
    while (data.size() <= limit) {
        beginCall();
        const zip_int64_t count = zip_fread(file.get(), part.data(), part.size());
        if (count < 0) {
            fail(zip_file_get_error(file.get()));
        }
        if (count == 0) {
            break;
        }
        data.append(part.data(), static_cast<std::size_t>(count));
    }
    return data;
}

} // namespace ostrel::bundle_reader
