#include "bundle_reader/BundleFile.h"
#include "support/NextDefinition.h"
#include "support/TemporaryDirectory.h"
#include "unit/ZipText.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <fstream>
#include <map>
#include <mutex>
#include <string>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace {

using ostrel::bundle_reader::ArchiveReader;
using ostrel::bundle_reader::read;
using ostrel::test::nextDefinition;

/// Sees which threads work on one archive of libzip, which has no lock of its own. The first call that reads data stays
/// inside until it is let go.
class Watch {
public:
    void opened(zip_t* archive, zip_file_t* entry)
    {
        const std::lock_guard lock{m_mutex};
        m_archives[entry] = archive;
    }

    zip_t* archiveOf(zip_file_t* entry)
    {
        const std::lock_guard lock{m_mutex};
        return m_archives[entry];
    }

    void enter(zip_t* archive, bool readsData)
    {
        std::unique_lock lock{m_mutex};
        if (++m_inside[archive] > 1) {
            overlap = true;
        }
        if (readsData && !m_entered) {
            m_entered = true;
            m_changed.notify_all();
            m_changed.wait(lock, [this] { return m_letGo; });
        }
    }

    void leave(zip_t* archive)
    {
        const std::lock_guard lock{m_mutex};
        --m_inside[archive];
    }

    bool waitForFirst()
    {
        std::unique_lock lock{m_mutex};
        return m_changed.wait_for(lock, std::chrono::seconds{20}, [this] { return m_entered; });
    }

    void letGo()
    {
        const std::lock_guard lock{m_mutex};
        m_letGo = true;
        m_changed.notify_all();
    }

    std::atomic<bool> overlap{false}; ///< two threads were inside of one archive; who asks makes nobody wait

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::map<zip_file_t*, zip_t*> m_archives;
    std::map<zip_t*, int> m_inside;
    bool m_entered = false;
    bool m_letGo = false;
};

std::atomic<Watch*> watch{nullptr};

template <class Call>
auto watched(zip_t* archive, bool readsData, Call call)
{
    Watch* const seen = watch;
    if (seen != nullptr) {
        seen->enter(archive, readsData);
    }
    const auto result = call();
    if (seen != nullptr) {
        seen->leave(archive);
    }
    return result;
}

/// Whether a thread of this process waits for something.
bool isWaiting(pid_t thread)
{
    std::ifstream file{"/proc/self/task/" + std::to_string(thread) + "/stat"};
    std::string line;
    std::getline(file, line);
    const auto state = line.rfind(") ");
    return state != std::string::npos && line[state + 2] == 'S';
}

} // namespace

extern "C" zip_file_t* zip_fopen_index(zip_t* archive, zip_uint64_t index, zip_flags_t flags)
{
    zip_file_t* const entry = watched(archive, false, [&] {
        return nextDefinition<zip_file_t*(zip_t*, zip_uint64_t, zip_flags_t)>("zip_fopen_index")(archive, index, flags);
    });
    if (Watch* const seen = watch; seen != nullptr) {
        seen->opened(archive, entry);
    }
    return entry;
}

extern "C" zip_int64_t zip_fread(zip_file_t* entry, void* data, zip_uint64_t size)
{
    Watch* const seen = watch;
    return watched(seen != nullptr ? seen->archiveOf(entry) : nullptr, true, [&] {
        return nextDefinition<zip_int64_t(zip_file_t*, void*, zip_uint64_t)>("zip_fread")(entry, data, size);
    });
}

namespace {

TEST(ReaderLock, twoReadsOfOneFileNeverMeetInTheLibrary)
{
    const ostrel::test::TemporaryDirectory directory;
    const std::string path = directory.write("file", ostrel::test::zipText({{"a/one", "1"}, {"a/two", "2"}})).string();
    const ArchiveReader reader{openArchive(path, read(path).place)};
    Watch seen;
    watch = &seen;
    std::string one;
    std::string two;
    std::atomic<pid_t> secondThread{0};
    std::atomic<bool> secondIsDone{false};

    std::thread first{[&] { one = reader.read(0); }};
    const bool firstIsInside = seen.waitForFirst();
    std::thread second{[&] {
        secondThread = static_cast<pid_t>(::syscall(SYS_gettid));
        two = reader.read(1);
        secondIsDone = true;
    }};
    while (!secondIsDone && !seen.overlap && (secondThread == 0 || !isWaiting(secondThread))) {
        std::this_thread::yield();
    }
    seen.letGo();
    first.join();
    second.join();
    watch = nullptr;

    EXPECT_TRUE(firstIsInside);
    EXPECT_FALSE(seen.overlap);
    EXPECT_EQ(one, "1");
    EXPECT_EQ(two, "2");
}

} // namespace
