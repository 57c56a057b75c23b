#include "bundle_reader/file/FileBytes.h"

#include <linux/openat2.h>

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>

namespace ostrel::bundle_reader {
namespace {

FileStamp stampFrom(const struct stat& status)
{
    return {status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size), status.st_mtim.tv_sec,
            status.st_mtim.tv_nsec};
}

// Non-blocking, as opening a pipe would otherwise wait for its writer.
constexpr int readingFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;

/// Below 0 also where the path has links, or the system does not know this way of opening.
int openWithoutLinks(const std::string& path)
{
    open_how how{};
    how.flags = readingFlags;
    how.resolve = RESOLVE_NO_SYMLINKS;
    return static_cast<int>(::syscall(SYS_openat2, AT_FDCWD, path.c_str(), &how, sizeof how));
}

[[noreturn]] void fail(int error, const std::string& path)
{
    throw std::system_error{error, std::generic_category(), "cannot read '" + path + "'"};
}

} // namespace

FileStamp stampOf(const std::string& path)
{
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? stampFrom(status) : FileStamp{};
}

FileBytes::FileBytes(const std::string& path) : m_path{path}
{
    if (path.find('\0') != std::string::npos) {
        fail(EINVAL, path); // the system would silently open a file of a shorter name
    }
    m_descriptor = openWithoutLinks(path);
    m_reachedWithoutLinks = m_descriptor >= 0;
    if (m_descriptor < 0) {
        m_descriptor = ::open(path.c_str(), readingFlags);
    }
    if (m_descriptor < 0) {
        fail(errno, path);
    }
    struct stat status {};
    const int error = ::fstat(m_descriptor, &status) != 0 ? errno
                      : S_ISDIR(status.st_mode)           ? EISDIR
                      : S_ISREG(status.st_mode)           ? 0
                                                          : EINVAL;
    if (error != 0) {
        ::close(m_descriptor);
        fail(error, path);
    }
    m_stamp = stampFrom(status);
}

FileBytes::~FileBytes()
{
    ::close(m_descriptor);
}

FileStamp FileBytes::stampNow() const
{
    struct stat status {};
    return ::fstat(m_descriptor, &status) == 0 ? stampFrom(status) : FileStamp{};
}

std::size_t FileBytes::read(std::uint64_t offset, char* to, std::size_t length) const
{
    std::size_t done = 0;
    while (done < length) {
        const ssize_t count = ::pread(m_descriptor, to + done, length - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno != EINTR) {
            fail(errno, m_path);
        }
        if (count == 0) {
            break;
        }
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return done;
}

} // namespace ostrel::bundle_reader
