/// Linked into every program and library of the instrumented build. The compiler calls __sanitizer_cov_trace_pc() at
/// the beginning of each basic block; here the places of those calls are written down, each once a process.
///
/// With OSTREL_COVERAGE_DIRECTORY set, the places that one process reaches in one program or library go to a file of
/// their own there: the path of the program or library, closed by a zero; at 4096 the number of places, then the
/// places, 32 bits each, counted from the beginning of the loaded file. Without it nothing is written.
///
/// Tests count allocations and open files, look at errno, end by abort() or in a forked child. So nothing is allocated
/// here, no descriptor stays open, and the file is shared memory, complete whenever the process ends.
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

// Made by the linker: the first byte of the loaded file, and the end of its code.
extern "C" __attribute__((visibility("hidden"))) const char __ehdr_start; // NOLINT(bugprone-reserved-identifier)
extern "C" __attribute__((visibility("hidden"))) const char etext;
extern "C" __attribute__((visibility("hidden"))) void
__sanitizer_cov_trace_pc(); // NOLINT(bugprone-reserved-identifier)

namespace {

constexpr std::size_t headerSize = 4096;
constexpr std::uint32_t mostPlaces = 1U << 20U;

enum State : int { notBegun, beginning, silent, ready };

std::atomic<int> state{notBegun};
std::atomic<unsigned char>* seen = nullptr; // one for each byte of code
std::atomic<std::uint32_t>* count = nullptr;
std::uint32_t* places = nullptr;

void* mapped(std::size_t size, int flags, int file)
{
    void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, flags, file, 0);
    return memory != MAP_FAILED ? memory : nullptr;
}

/// The path of the file that this code was loaded from, if the line of /proc/self/maps is about its beginning.
const char* ownPathIn(const char* line)
{
    const bool own = std::strtoull(line, nullptr, 16) == reinterpret_cast<std::uintptr_t>(&__ehdr_start);
    return own ? std::strchr(line, '/') : nullptr;
}

/// Writes the path of the file that this code was loaded from to `path`; false if the system does not tell.
bool findOwnPath(char* path, std::size_t size)
{
    const int maps = open("/proc/self/maps", O_RDONLY | O_CLOEXEC);
    if (maps < 0) {
        return false;
    }
    static char buffer[1U << 16U];
    static char line[headerSize + 256];
    std::size_t length = 0;
    bool found = false;
    for (ssize_t got = read(maps, buffer, sizeof buffer); got > 0 && !found; got = read(maps, buffer, sizeof buffer)) {
        for (ssize_t i = 0; i < got && !found; ++i) {
            if (buffer[i] != '\n') {
                line[length] = buffer[i];
                length += length + 1 < sizeof line ? 1 : 0;
                continue;
            }
            line[length] = '\0';
            length = 0;
            const char* const own = ownPathIn(line);
            if (own != nullptr && std::strlen(own) < size) {
                std::strcpy(path, own);
                found = true;
            }
        }
    }
    close(maps);
    return found;
}

/// A new file in `directory`; -1 if none can be made.
int newFile(const char* directory)
{
    static char name[headerSize + 64];
    for (int number = 0; number < 1000; ++number) {
        std::snprintf(name, sizeof name, "%s/%ld-%zx-%d", directory, static_cast<long>(getpid()),
                      reinterpret_cast<std::size_t>(&__ehdr_start), number);
        const int file = open(name, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (file >= 0 || errno != EEXIST) {
            return file;
        }
    }
    return -1;
}

State begin()
{
    const char* const directory = std::getenv("OSTREL_COVERAGE_DIRECTORY");
    if (directory == nullptr || *directory == '\0') {
        return silent;
    }
    const int file = newFile(directory);
    if (file < 0) {
        return silent;
    }
    const std::size_t size = headerSize + sizeof(std::uint32_t) * (mostPlaces + 1);
    void* const memory = ftruncate(file, static_cast<off_t>(size)) == 0 ? mapped(size, MAP_SHARED, file) : nullptr;
    close(file);
    void* const marks = mapped(static_cast<std::size_t>(&etext - &__ehdr_start) + 1, MAP_PRIVATE | MAP_ANONYMOUS, -1);
    if (memory == nullptr || marks == nullptr || !findOwnPath(static_cast<char*>(memory), headerSize)) {
        return silent;
    }
    auto* const numbers = reinterpret_cast<std::uint32_t*>(static_cast<char*>(memory) + headerSize);
    count = reinterpret_cast<std::atomic<std::uint32_t>*>(numbers);
    places = numbers + 1;
    seen = static_cast<std::atomic<unsigned char>*>(marks);
    return ready;
}

} // namespace

void __sanitizer_cov_trace_pc()
{
    int now = state.load(std::memory_order_acquire);
    if (now == notBegun && state.compare_exchange_strong(now, beginning)) {
        const int errnoBefore = errno;
        now = begin();
        errno = errnoBefore;
        state.store(now, std::memory_order_release);
    }
    if (now != ready) {
        return; // what other threads reach while one begins is missed; the others go on, and mostly come again
    }
    const auto place =
        static_cast<std::uint32_t>(static_cast<const char*>(__builtin_return_address(0)) - &__ehdr_start);
    if (seen[place].load(std::memory_order_relaxed) == 0 && seen[place].exchange(1) == 0) {
        const std::uint32_t at = count->fetch_add(1);
        if (at < mostPlaces) {
            places[at] = place;
        }
    }
}
