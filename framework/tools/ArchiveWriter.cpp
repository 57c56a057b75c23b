#include "ArchiveWriter.h"

#include <array>
#include <cstddef>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace {

constexpr zip_uint16_t firstOfJanuary1980 = (1 << 5) | 1;

std::string take(zip_error_t& error)
{
    std::string why = zip_error_strerror(&error);
    zip_error_fini(&error);
    return why;
}

} // namespace

std::string readFile(const std::string& path, const std::string& what)
{
    std::ifstream file{path, std::ios::binary};
    std::string bytes;
    std::array<char, 65536> part;
    // By read(), which turns the error of reading a folder into a state of the stream.
    while (file.read(part.data(), part.size()) || file.gcount() > 0) {
        bytes.append(part.data(), static_cast<std::size_t>(file.gcount()));
    }
    if (!file.is_open() || file.bad()) {
        throw std::runtime_error{what + " '" + path + "'"};
    }
    return bytes;
}

ArchiveWriter::ArchiveWriter()
{
    zip_error_t error;
    zip_error_init(&error);
    m_target.reset(zip_source_buffer_create(nullptr, 0, 0, &error));
    if (m_target) {
        m_archive.reset(zip_open_from_source(m_target.get(), ZIP_CREATE | ZIP_TRUNCATE, &error));
    }
    if (!m_archive) {
        throw std::runtime_error{"cannot create an archive: " + take(error)};
    }
    zip_source_keep(m_target.get()); // one reference is the archive's, one ours
}

ArchiveWriter::~ArchiveWriter() = default;

void ArchiveWriter::fail(const std::string& name) const
{
    throw std::runtime_error{"cannot add '" + name + "' to the archive: " + zip_strerror(m_archive.get())};
}

void ArchiveWriter::claim(const std::string& name, const char* complaint)
{
    if (!m_names.insert(name).second) {
        throw std::runtime_error{complaint + name};
    }
}

void ArchiveWriter::addFolder(const std::string& name)
{
    if (!m_names.insert(name).second) {
        return;
    }
    const zip_int64_t index = zip_dir_add(m_archive.get(), name.c_str(), ZIP_FL_ENC_UTF_8);
    if (index < 0 ||
        zip_file_set_dostime(m_archive.get(), static_cast<zip_uint64_t>(index), 0, firstOfJanuary1980, 0) != 0) {
        fail(name);
    }
}

void ArchiveWriter::addFile(const std::string& name, std::string bytes, int level, std::optional<std::time_t> modified)
{
    for (auto slash = name.find('/'); slash != std::string::npos; slash = name.find('/', slash + 1)) {
        addFolder(name.substr(0, slash + 1));
    }
    claim(name, "A file already exists with the name ");
    m_bytes.push_back(std::move(bytes));
    zip_source_t* const source = zip_source_buffer(m_archive.get(), m_bytes.back().data(), m_bytes.back().size(), 0);
    const zip_int64_t added =
        source == nullptr ? -1 : zip_file_add(m_archive.get(), name.c_str(), source, ZIP_FL_ENC_UTF_8);
    if (added < 0) {
        zip_source_free(source);
        fail(name);
    }
    const auto index = static_cast<zip_uint64_t>(added);
    const int timed = modified ? zip_file_set_mtime(m_archive.get(), index, *modified, 0)
                               : zip_file_set_dostime(m_archive.get(), index, 0, firstOfJanuary1980, 0);
    const auto method = level == 0 ? ZIP_CM_STORE : ZIP_CM_DEFLATE;
    if (timed != 0 || zip_set_file_compression(m_archive.get(), index, method, static_cast<zip_uint32_t>(level)) != 0) {
        fail(name);
    }
}

void ArchiveWriter::merge(const std::string& path)
{
    int code = 0;
    zip_t* const other = zip_open(path.c_str(), ZIP_RDONLY, &code);
    if (other == nullptr) {
        zip_error_t error;
        zip_error_init_with_code(&error, code);
        throw std::runtime_error{"Could not initialize zip archive " + path + ": " + take(error)};
    }
    m_mergedArchives.emplace_back(other);
    const zip_int64_t entries = zip_get_num_entries(other, 0);
    for (zip_uint64_t index = 0; index < static_cast<zip_uint64_t>(entries); ++index) {
        const char* const rawName = zip_get_name(other, index, ZIP_FL_ENC_RAW);
        if (rawName == nullptr) {
            throw std::runtime_error{"an entry of '" + path + "' has no name"};
        }
        const std::string name{rawName};
        const bool isFolder = !name.empty() && name.back() == '/';
        if (isFolder && m_names.count(name) != 0) {
            continue;
        }
        claim(name, "Found duplicate file with name ");
        zip_source_t* const source = zip_source_zip(m_archive.get(), other, index, 0, 0, -1);
        if (source == nullptr || zip_file_add(m_archive.get(), name.c_str(), source, ZIP_FL_ENC_GUESS) < 0) {
            zip_source_free(source);
            fail(name);
        }
    }
}

std::string ArchiveWriter::finish()
{
    if (zip_close(m_archive.get()) != 0) {
        throw std::runtime_error{std::string{"cannot make the archive: "} + zip_strerror(m_archive.get())};
    }
    static_cast<void>(m_archive.release()); // closing has freed it
    zip_stat_t status;
    if (zip_source_stat(m_target.get(), &status) != 0 || zip_source_open(m_target.get()) != 0) {
        throw std::runtime_error{"cannot read the finished archive"};
    }
    std::string bytes(status.size, '\0');
    const zip_int64_t count = zip_source_read(m_target.get(), bytes.data(), bytes.size());
    zip_source_close(m_target.get());
    if (count != static_cast<zip_int64_t>(bytes.size())) {
        throw std::runtime_error{"cannot read the finished archive"};
    }
    return bytes;
}
