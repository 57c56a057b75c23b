#include "bundle_reader/zip/ArchiveReader.h"

#include "bundle_reader/file/SharedFile.h"
#include "bundle_reader/zip/ZipReader.h"

#include <stdexcept>
#include <utility>

namespace ostrel::bundle_reader {
namespace {

[[noreturn]] void fail(const std::string& path, const std::string& why)
{
    throw std::runtime_error{"cannot read the archive in '" + path + "': " + why};
}

/// Runs `work`; what it says is wrong is told with the file's name and `what`.
template <class Work>
auto namingFile(const std::string& path, const std::string& what, Work work)
{
    try {
        return work();
    } catch (const ZipFault& fault) {
        fail(path, what + fault.why);
    } catch (const std::runtime_error& error) {
        fail(path, what + error.what());
    }
}

} // namespace

OpenArchive openArchive(const std::string& path, const ArchivePlace& place)
{
    if (place.kept) {
        return {path, place.kept, 0, place.kept->size()};
    }
    return namingFile(path, {}, [&] {
        return OpenArchive{path, std::make_shared<const SharedFile>(path, place.stamp), place.begin, place.end};
    });
}

ArchiveReader::ArchiveReader(OpenArchive archive) : m_archive{std::move(archive)}
{
    namingFile(m_archive.path, {}, [this] {
        m_reader = std::make_unique<const ZipReader>(*m_archive.bytes, m_archive.begin, m_archive.end);
        for (std::uint64_t index = 0; index < m_reader->count(); ++index) {
            m_entries.push_back(m_reader->entry(index));
        }
    });
}

ArchiveReader::~ArchiveReader() = default;

std::string ArchiveReader::read(std::size_t entry) const
{
    const Entry& expected = m_entries.at(entry);
    return namingFile(m_archive.path, "'" + expected.name + "': ", [&] {
        if (expected.size > entryLimit) {
            throw ZipFault{"it is larger than an entry may be, " + std::to_string(entryLimit >> 20U) + " MiB"};
        }
        // libzip keeps what it knows of the archive in one place, also while it reads.
        const std::lock_guard<std::mutex> lock{m_mutex};
        std::string data = m_reader->unpack(entry, expected.size);
        if (data.size() != expected.size) {
            throw ZipFault{"it has not the size that the directory says"};
        }
        return data;
    });
}

} // namespace ostrel::bundle_reader
