#include "StandardStreams.h"

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

} // namespace ostrel::host
