#include "watch/TimeLimit.h"

#include "watch/Culprit.h"
#include "watch/Exit.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <pthread.h>
#include <sstream>
#include <string>
#include <thread>

namespace ostrel::host {

namespace {

using Clock = Activity::Clock;

/// One of those that no program uses by habit.
const int question = SIGRTMAX - 1;

std::atomic<const KnownBundle*> answer{nullptr};
std::atomic<bool> isAnswered{false};

void onQuestion(int /*signal*/)
{
    const int error = errno;
    answer = innermostBundle();
    isAnswered = true;
    errno = error;
}

/// The bundle in whose code the main thread is; null if there is none, or it does not answer soon.
const KnownBundle* ask(pthread_t mainThread)
{
    constexpr std::chrono::milliseconds step{1};
    pthread_kill(mainThread, question);
    for (int waited = 0; waited < 500 && !isAnswered; ++waited) {
        std::this_thread::sleep_for(step);
    }
    return answer;
}

[[noreturn]] void tellAndEnd(const Activity::Work* work, pthread_t mainThread, const std::string& limit)
{
    SafeLine line;
    if (work != nullptr) {
        line << work->bundle->head << "did not end being " << (work->isStart ? "started" : "stopped") << " within "
             << limit << (work->isStart ? " [start-hangs]" : " [stop-hangs]") << "\n  why: "
             << (work->isStart ? "its Start(), or what its library runs when it is loaded, has not come back"
                               : "its Stop() has not come back")
             << "\n  do:  let it come back sooner, or give it more time by --timeout\n";
    } else if (const KnownBundle* const bundle = ask(mainThread)) {
        line << bundle->head << "did not end within " << limit << " while " << Activity::instance().currentStep()
             << "\n  why: its code was called and has not come back"
             << "\n  do:  let it come back sooner, or give it more time by --timeout\n";
    } else {
        line << "ostrel-host: error: the limit of " << limit << " was reached while "
             << Activity::instance().currentStep()
             << "\n  why: something has not come back, and nothing tells what it is"
             << "\n  do:  look with a debugger at what the process waits for, or give it more time by --timeout\n";
    }
    line.write();
    endAtOnce(ExitStatus::bundle);
}

void keepTime(Clock::duration limit, const std::string& shown, pthread_t mainThread)
{
    Activity& activity = Activity::instance();
    std::unique_lock lock{activity.mutex()};
    for (;;) {
        const Activity::Longest longest = activity.longest();
        if (Clock::now() < longest.since + limit) {
            activity.changed().wait_until(lock, longest.since + limit);
            continue;
        }
        // Not under the lock: the main thread may be about to take it.
        lock.unlock();
        tellAndEnd(longest.work, mainThread, shown);
    }
}

} // namespace

void limitTime(std::chrono::duration<double> limit)
{
    struct sigaction action {};
    action.sa_handler = onQuestion;
    action.sa_flags = SA_RESTART | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    sigaction(question, &action, nullptr);

    std::ostringstream shown;
    shown << limit.count() << " s";

    // The new thread takes over that it gets no signals, which are for the others.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread{keepTime, std::chrono::duration_cast<Clock::duration>(limit), shown.str(), pthread_self()}.detach();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

} // namespace ostrel::host
