#include "bundle_reader/zip/ArchiveWriter.h"

#include "bundle_reader/zip/ZipError.h"

#include <zip.h>

#include <list>
#include <set>
#include <stdexcept>
#include <utility>

namespace ostrel::bundle_reader {
namespace {

constexpr zip_uint16_t firstOfJanuary1980 = (1 << 5) | 1;

struct Discard {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
struct Free {
    void operator()(zip_source_t* source) const { zip_source_free(source); }
};

} // namespace

struct ArchiveWriter::Parts {
    std::unique_ptr<zip_source_t, Free> target;
    std::list<std::string> bytes;                              // to which the archive refers until it is closed
    std::list<std::unique_ptr<zip_t, Discard>> mergedArchives; // likewise
    std::unique_ptr<zip_t, Discard> archive;
    std::set<std::string> names;

    void claim(const std::string& name, const char* complaint)
    {
        if (!names.insert(name).second) {
            throw std::runtime_error{complaint + name};
        }
    }

    [[noreturn]] void fail(const std::string& name) const
    {
        const std::string why = zipReason(*zip_get_error(archive.get()));
        throw std::runtime_error{"cannot add '" + name + "' to the archive: " + why};
    }
};

ArchiveWriter::ArchiveWriter() : m_parts{std::make_unique<Parts>()}
{
    ZipError error;
    beginCall();
    m_parts->target.reset(zip_source_buffer_create(nullptr, 0, 0, &error.value));
    if (m_parts->target) {
        m_parts->archive.reset(zip_open_from_source(m_parts->target.get(), ZIP_CREATE | ZIP_TRUNCATE, &error.value));
    }
    if (!m_parts->archive) {
        throw std::runtime_error{"cannot create an archive: " + zipReason(error.value)};
    }
    zip_source_keep(m_parts->target.get()); // one reference is the archive's, one ours
}

ArchiveWriter::~ArchiveWriter() = default;

void ArchiveWriter::addFolder(const std::string& name)
{
    if (!m_parts->names.insert(name).second) {
        return;
    }
    zip_t* const archive = m_parts->archive.get();
    beginCall();
    const zip_int64_t index = zip_dir_add(archive, name.c_str(), ZIP_FL_ENC_UTF_8);
    if (index < 0 || zip_file_set_dostime(archive, static_cast<zip_uint64_t>(index), 0, firstOfJanuary1980, 0) != 0) {
        m_parts->fail(name);
    }
}

void ArchiveWriter::addFile(const std::string& name, std::string bytes, int level, std::optional<std::time_t> modified)
{
    for (auto slash = name.find('/'); slash != std::string::npos; slash = name.find('/', slash + 1)) {
        addFolder(name.substr(0, slash + 1));
    }
    m_parts->claim(name, "A file already exists with the name ");
    m_parts->bytes.push_back(std::move(bytes));
    const std::string& kept = m_parts->bytes.back();
    zip_t* const archive = m_parts->archive.get();
    beginCall();
    zip_source_t* const source = zip_source_buffer(archive, kept.data(), kept.size(), 0);
    const zip_int64_t added = source == nullptr ? -1 : zip_file_add(archive, name.c_str(), source, ZIP_FL_ENC_UTF_8);
    if (added < 0) {
        zip_source_free(source);
        m_parts->fail(name);
    }
    const auto index = static_cast<zip_uint64_t>(added);
    const int timed = modified ? zip_file_set_mtime(archive, index, *modified, 0)
                               : zip_file_set_dostime(archive, index, 0, firstOfJanuary1980, 0);
    const auto method = level == 0 ? ZIP_CM_STORE : ZIP_CM_DEFLATE;
    if (timed != 0 || zip_set_file_compression(archive, index, method, static_cast<zip_uint32_t>(level)) != 0) {
        m_parts->fail(name);
    }
}

void ArchiveWriter::merge(const std::string& path)
{
    int code = 0;
    beginCall();
    zip_t* const other = zip_open(path.c_str(), ZIP_RDONLY, &code);
    if (other == nullptr) {
        ZipError error;
        zip_error_init_with_code(&error.value, code);
        throw std::runtime_error{"Could not initialize zip archive " + path + ": " + zipReason(error.value)};
    }
    m_parts->mergedArchives.emplace_back(other);
    zip_t* const archive = m_parts->archive.get();
    const zip_int64_t entries = zip_get_num_entries(other, 0);
    for (zip_uint64_t index = 0; index < static_cast<zip_uint64_t>(entries); ++index) {
        const char* const rawName = zip_get_name(other, index, ZIP_FL_ENC_RAW);
        if (rawName == nullptr) {
            throw std::runtime_error{"an entry of '" + path + "' has no name"};
        }
        const std::string name{rawName};
        const bool isFolder = !name.empty() && name.back() == '/';
        if (isFolder && m_parts->names.count(name) != 0) {
            continue;
        }
        m_parts->claim(name, "Found duplicate file with name ");
        beginCall();
        zip_source_t* const source = zip_source_zip(archive, other, index, 0, 0, -1);
        if (source == nullptr || zip_file_add(archive, name.c_str(), source, ZIP_FL_ENC_GUESS) < 0) {
            zip_source_free(source);
            m_parts->fail(name);
        }
    }
}

std::string ArchiveWriter::finish()
{
    beginCall();
    if (zip_close(m_parts->archive.get()) != 0) {
        const std::string why = zipReason(*zip_get_error(m_parts->archive.get()));
        throw std::runtime_error{"cannot make the archive: " + why};
    }
    static_cast<void>(m_parts->archive.release()); // closing has freed it
    zip_source_t* const target = m_parts->target.get();
    zip_stat_t status;
    if (zip_source_stat(target, &status) != 0 || zip_source_open(target) != 0) {
        throw std::runtime_error{"cannot read the finished archive"};
    }
    std::string bytes(status.size, '\0');
    const zip_int64_t count = zip_source_read(target, bytes.data(), bytes.size());
    zip_source_close(target);
    if (count != static_cast<zip_int64_t>(bytes.size())) {
        throw std::runtime_error{"cannot read the finished archive"};
    }
    return bytes;
}

} // namespace ostrel::bundle_reader
