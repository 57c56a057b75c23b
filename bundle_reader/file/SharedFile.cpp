#include "bundle_reader/file/SharedFile.h"

#include <mutex>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace ostrel::bundle_reader {
namespace {

constexpr const char* changed = "the file was removed, replaced or changed since it was first read";

} // namespace

/// Those that are open, the one that was used last first.
struct SharedFile::OpenFiles {
    std::mutex mutex;
    std::list<const SharedFile*> list;
};

SharedFile::OpenFiles& SharedFile::openFiles()
{
    // Never destroyed: files may be read while the process ends.
    static auto& files = *new OpenFiles;
    return files;
}

SharedFile::SharedFile(std::string path, const FileStamp& stamp) : m_path{std::move(path)}, m_stamp{stamp}
{
    use();
}

SharedFile::~SharedFile()
{
    File closed; // goes after the lock
    const std::lock_guard<std::mutex> lock{openFiles().mutex};
    if (m_file) {
        openFiles().list.erase(m_place);
        closed = std::move(m_file);
    }
}

SharedFile::File SharedFile::opened() const
{
    try {
        auto file = std::make_shared<const FileBytes>(m_path);
        if (file->stamp() == m_stamp) {
            return file;
        }
    } catch (const std::system_error& error) {
        const bool isGone = error.code() == std::errc::no_such_file_or_directory;
        throw std::runtime_error{isGone ? std::string{changed} : error.code().message()};
    }
    throw std::runtime_error{changed};
}

SharedFile::File SharedFile::use() const
{
    auto& [mutex, list] = openFiles();
    {
        const std::lock_guard<std::mutex> lock{mutex};
        if (m_file) {
            list.splice(list.begin(), list, m_place);
            return m_file;
        }
    }
    File file = opened();
    File closed; // goes after the lock, as does that of another thread which lost the race
    const std::lock_guard<std::mutex> lock{mutex};
    if (m_file) {
        return m_file;
    }
    list.push_front(this);
    m_place = list.begin();
    m_file = file;
    if (list.size() > sharedFileLimit) {
        closed = std::move(list.back()->m_file);
        list.pop_back();
    }
    return file;
}

std::size_t SharedFile::read(std::uint64_t offset, char* to, std::size_t length) const
{
    const File file = use();
    if (file->stampNow() != m_stamp) {
        throw std::runtime_error{changed};
    }
    try {
        return file->read(offset, to, length);
    } catch (const std::system_error& error) {
        throw std::runtime_error{error.code().message()};
    }
}

} // namespace ostrel::bundle_reader
