#include "watch/Exit.h"

#include "watch/Culprit.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace ostrel::host {

namespace {

pid_t process = 0;
std::atomic<bool> isAllowed{false};

/// Called by exit() and quick_exit() on the thread that called these, which are found in its stack.
void tell(const char* call, const int* status)
{
    // A child that a bundle forked may end as it likes.
    if (isAllowed || getpid() != process) {
        return;
    }
    SafeLine line;
    writeCulprit(line, Activity::instance().suspectOfThisThread(), "ended the process", "the process was ended")
        << ": it called " << call << "(";
    if (status != nullptr) {
        line.number(*status);
    }
    line << ") [exits]\n"
            "  why: then no other bundle runs on, nothing more is reported, and no bundle is stopped\n"
            "  do:  let the bundle throw an exception instead, which says what is wrong\n";
    line.write();
    endAtOnce(ExitStatus::bundle);
}

void onExit(int status, void* /*nothing*/)
{
    tell("exit", &status);
}

void onQuickExit()
{
    tell("quick_exit", nullptr);
}

} // namespace

void tellExits()
{
    isAllowed = false;
    if (process == 0) {
        process = getpid();
        on_exit(onExit, nullptr);
        std::at_quick_exit(onQuickExit);
    }
}

void allowExit()
{
    isAllowed = true;
}

void endAtOnce(ExitStatus status)
{
    // What bundles printed is still in there. Who holds the lock may hang.
    if (ftrylockfile(stdout) == 0) {
        fflush_unlocked(stdout);
    }
    _exit(static_cast<int>(status));
}

} // namespace ostrel::host
