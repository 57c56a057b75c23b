#include "frame/StandardStreams.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace ostrel::host {

void prepareStandardStreams()
{
    std::signal(SIGPIPE, SIG_IGN);
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) != -1) {
            continue;
        }
        // open() takes the lowest free number, which is this one. Standard output gets a file that cannot be written,
        // so that the loss of the result is noticed.
        const int mode = descriptor == STDERR_FILENO ? O_WRONLY : O_RDONLY;
        if (open("/dev/null", mode) != descriptor) {
            return;
        }
    }
}

void divertStandardOutput()
{
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

ResultStream::ResultStream()
    : std::ostream(nullptr),
      // Not one of the first three, which a bundle might close or replace; and no program that a bundle starts has it.
      m_buffer(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)),
      m_isTerminal(isatty(STDOUT_FILENO) == 1)
{
    rdbuf(&m_buffer);
}

ResultStream::Buffer::Buffer(int descriptor) : m_descriptor(descriptor)
{
    setp(m_bytes.data(), m_bytes.data() + m_bytes.size());
}

ResultStream::Buffer::int_type ResultStream::Buffer::overflow(int_type c)
{
    if (sync() != 0) {
        return traits_type::eof();
    }
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
        *pptr() = traits_type::to_char_type(c);
        pbump(1);
    }
    return traits_type::not_eof(c);
}

int ResultStream::Buffer::sync()
{
    const char* from = pbase();
    while (m_error == 0 && from != pptr()) {
        const ssize_t written = ::write(m_descriptor, from, static_cast<std::size_t>(pptr() - from));
        if (written >= 0) {
            from += written;
        } else if (errno != EINTR) {
            m_error = errno;
        }
    }
    // What could not be written is lost; a second attempt might write the rest behind a gap.
    setp(m_bytes.data(), m_bytes.data() + m_bytes.size());
    return m_error == 0 ? 0 : -1;
}

} // namespace ostrel::host
