#pragma once

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

/// What a bundle may do to the program that hosts it.
namespace deeds {

inline void crashes()
{
    *reinterpret_cast<volatile int*>(std::uintptr_t{0x1208}) = 1;
}

inline void aborts()
{
    std::abort();
}

inline void raises()
{
    std::raise(SIGTRAP);
}

inline int deeper(volatile int* from)
{
    volatile int frame[1024];
    frame[0] = *from + 1;
    return frame[0] == 0 ? 0 : deeper(frame) + frame[0];
}

inline void overflows()
{
    volatile int zero = 0;
    deeper(&zero);
}

/// Crashes in a function of the system, with a stack that nobody can walk along.
inline void losesItsStack()
{
#if defined(__x86_64__)
    asm volatile("mov $16, %%rsp\n jmp *%0" ::"r"(&std::abort) : "memory");
#else
#error "write this for the processor"
#endif
}

/// Another process ends this one.
inline void isEnded()
{
    const pid_t self = getpid();
    if (fork() == 0) {
        kill(self, SIGABRT);
        _exit(0);
    }
    for (;;) {
        pause();
    }
}

/// Harmless: takes its time.
inline void naps()
{
    std::this_thread::sleep_for(std::chrono::milliseconds{700});
}

inline void exits()
{
    std::exit(42);
}

inline void quickExits()
{
    std::quick_exit(0);
}

inline void hangs()
{
    for (;;) {
        pause();
    }
}

inline void hangsBlocked()
{
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, nullptr);
    hangs();
}

inline void throws()
{
    throw std::runtime_error{"planned\x1b[31m\nfault"};
}

/// Harmless: a child of the process that ends by exit(), and another one that crashes.
inline void forks()
{
    for (const bool doesExit : {true, false}) {
        const pid_t child = fork();
        if (child == 0) {
            doesExit ? std::exit(3) : crashes();
        }
        int state = 0;
        waitpid(child, &state, 0);
        const bool isAsMeant =
            doesExit ? WIFEXITED(state) && WEXITSTATUS(state) == 3 : WIFSIGNALED(state) && WTERMSIG(state) == SIGSEGV;
        if (!isAsMeant) {
            throw std::runtime_error{"a child ended otherwise"};
        }
    }
}

} // namespace deeds
