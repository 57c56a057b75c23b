#include "watch/Crash.h"

#include "watch/Culprit.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cxxabi.h>
#include <exception>
#include <inspection/Text.h>
#include <memory>
#include <pthread.h>
#include <string>
#include <unistd.h>

namespace ostrel::host {

namespace {

struct Crash {
    int signal;
    const char* name;
    const char* reason;
};

constexpr std::array crashes{
    Crash{SIGSEGV, "SIGSEGV (segmentation fault)", ""},
    Crash{SIGBUS, "SIGBUS (bus error)", ""},
    Crash{SIGFPE, "SIGFPE (arithmetic error)", "it divided by zero, or the result fits no number"},
    Crash{SIGILL, "SIGILL (illegal instruction)", "it ran into what is no instruction of this processor"},
    Crash{SIGABRT, "SIGABRT (abort)", "it called abort(), or a check within it failed"},
    Crash{SIGSYS, "SIGSYS (bad system call)", "it made a system call that is forbidden"},
    Crash{SIGTRAP, "SIGTRAP (breakpoint)", "it ran into a breakpoint, and no debugger is there"},
};

constexpr const char* remedy =
    "\n  do:  repair the bundle, or take it out of the directory; a debugger or a core dump shows the place\n";

std::array<struct sigaction, crashes.size()> before;
pid_t process = 0;
/// The thread that tells of the end of the process; there is one message only.
std::atomic<pid_t> teller{0};
/// Of the main thread: where the stack ends, and a fault below means that it is used up.
std::uintptr_t endOfStack = 0;

std::size_t indexOf(int signal) noexcept
{
    std::size_t index = 0;
    while (index + 1 < crashes.size() && crashes[index].signal != signal) {
        ++index;
    }
    return index;
}

/// Whether this thread is to tell of the end. Another one may be at it already: then it waits for the end.
bool becomeTeller() noexcept
{
    pid_t nobody = 0;
    if (teller.compare_exchange_strong(nobody, gettid())) {
        return true;
    }
    while (nobody != gettid()) {
        pause();
    }
    return false;
}

bool isStackUsedUp(std::uintptr_t address) noexcept
{
    // Frames of functions may be large, and the first access may be far below the end.
    constexpr std::uintptr_t below = std::uintptr_t{1} << 20U;
    return Activity::instance().isMainThread() && address + below >= endOfStack && address < endOfStack;
}

bool isFault(const siginfo_t& info) noexcept
{
    return info.si_code > 0 &&
           (info.si_signo == SIGSEGV || info.si_signo == SIGBUS || info.si_signo == SIGFPE || info.si_signo == SIGILL);
}

void writeReason(SafeLine& line, const Crash& crash, const siginfo_t& info) noexcept
{
    line << "\n  why: ";
    const auto address = reinterpret_cast<std::uintptr_t>(info.si_addr);
    if (info.si_code <= 0 && info.si_pid != process) {
        line << "the process ";
        line.number(info.si_pid) << " sent the signal";
    } else if (info.si_code <= 0 && info.si_signo != SIGABRT) {
        line << "it sent itself the signal";
    } else if (crash.reason[0] != '\0') {
        line << crash.reason;
    } else if (isStackUsedUp(address)) {
        line << "it used up its stack, as endless recursion does";
    } else if (info.si_code == SI_KERNEL) {
        line << "it used an address that no memory can have";
    } else {
        line << "it used the address ";
        line.address(address) << ", which it may not";
    }
}

void onSignal(int signal, siginfo_t* info, void* /*context*/)
{
    abandonWalk();
    const int error = errno;
    const std::size_t index = indexOf(signal);
    // A child that a bundle forked ends as it would have, in silence.
    if (getpid() == process && becomeTeller()) {
        SafeLine line;
        const bool isOwn = info->si_code > 0 || info->si_pid == process;
        writeCulprit(line, Activity::instance().suspectOfThisThread(), isOwn ? "crashed" : "was ended",
                     isOwn ? "the program crashed" : "the program was ended")
            << ": " << crashes[index].name << " [crashes]";
        writeReason(line, crashes[index], *info);
        (line << remedy).write();
    }
    sigaction(signal, &before[index], nullptr);
    errno = error;
    // A fault happens again as soon as this returns, now without us, so that a core dump shows its place.
    if (!isFault(*info)) {
        raise(signal);
    }
}

std::string nameOf(const std::type_info& type)
{
    struct Free {
        void operator()(char* name) const { std::free(name); }
    };
    const std::unique_ptr<char, Free> name{abi::__cxa_demangle(type.name(), nullptr, nullptr, nullptr)};
    return name ? name.get() : type.name();
}

std::string thrown()
{
    const std::exception_ptr exception = std::current_exception();
    if (!exception) {
        return "std::terminate was called";
    }
    try {
        std::rethrow_exception(exception);
    } catch (const std::exception& error) {
        return "uncaught exception " + nameOf(typeid(error)) + ": " + inspection::escaped(error.what());
    } catch (...) {
        const std::type_info* const type = abi::__cxa_current_exception_type();
        return "uncaught exception of the type " + (type == nullptr ? "unknown" : nameOf(*type));
    }
}

[[noreturn]] void onTerminate()
{
    if (getpid() == process) {
        const Activity::Suspect suspect = Activity::instance().suspectOfThisThread();
        // Before this thread becomes the teller: the exception's text is code of the bundle and may crash itself.
        const std::string what = thrown();
        if (becomeTeller()) {
            SafeLine line;
            writeCulprit(line, suspect, "crashed", "the program crashed")
                << ": " << what << " [crashes]\n  why: the C++ library ends the process then"
                << "\n  do:  catch it in the bundle, or take the bundle out of the directory\n";
            line.write();
        }
    }
    std::abort();
}

/// Without a stack of its own a handler could not run once the stack is used up.
void prepareStack()
{
    stack_t stack{};
    if (sigaltstack(nullptr, &stack) == 0 && (stack.ss_flags & SS_DISABLE) != 0) {
        constexpr std::size_t size = std::size_t{1} << 16U;
        static std::array<char, size> memory;
        stack = {};
        stack.ss_sp = memory.data();
        stack.ss_size = memory.size();
        sigaltstack(&stack, nullptr);
    }
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) == 0) {
        void* begin = nullptr;
        std::size_t size = 0;
        pthread_attr_getstack(&attributes, &begin, &size);
        endOfStack = reinterpret_cast<std::uintptr_t>(begin);
        pthread_attr_destroy(&attributes);
    }
}

} // namespace

void tellCrashes()
{
    if (process != 0) {
        return;
    }
    process = getpid();
    Activity::instance();
    // What is called for the first time may be looked up and loaded, which a handler must not wait for.
    innermostBundle();
    prepareStack();
    for (std::size_t i = 0; i < crashes.size(); ++i) {
        struct sigaction action {};
        action.sa_sigaction = onSignal;
        // A walk through a broken stack may need the same signal once more.
        action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
        sigemptyset(&action.sa_mask);
        sigaction(crashes[i].signal, &action, &before[i]);
    }
    std::set_terminate(onTerminate);
}

} // namespace ostrel::host
