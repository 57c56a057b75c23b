#include "cli/Terminal.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace ostrel::test {

Terminal::Terminal(unsigned short columns) : m_master(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK))
{
    if (m_master < 0 || grantpt(m_master) != 0 || unlockpt(m_master) != 0) {
        throw std::runtime_error{"Terminal: no pseudo-terminal is to be had"};
    }
    m_slave = open(ptsname(m_master), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings{};
    winsize size{};
    size.ws_row = 24;
    size.ws_col = columns;
    if (m_slave < 0 || tcgetattr(m_slave, &settings) != 0) {
        throw std::runtime_error{"Terminal: the pseudo-terminal cannot be opened"};
    }
    cfmakeraw(&settings);
    tcsetattr(m_slave, TCSANOW, &settings);
    ioctl(m_slave, TIOCSWINSZ, &size);
}

Terminal::~Terminal()
{
    close(m_slave);
    close(m_master);
}

std::string Terminal::read() const
{
    std::string text;
    std::array<char, 4096> bytes{};
    for (;;) {
        const ssize_t count = ::read(m_master, bytes.data(), bytes.size());
        if (count <= 0) {
            return text;
        }
        text.append(bytes.data(), static_cast<std::size_t>(count));
    }
}

} // namespace ostrel::test
