// No operation starts a thread: everything that an operation calls runs on the caller's.
#include "integration/concurrency/Operations.h"
#include "support/ContainerFixture.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <iterator>
#include <set>
#include <thread>

namespace ostrel::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

std::ptrdiff_t threadsOfThisProcess()
{
    return std::distance(std::filesystem::directory_iterator{"/proc/self/task"}, {});
}

class CallersThread : public ContainerFixture {
protected:
    CallersThread()
    {
        container.startBundle(host.add("alpha"));
        const auto note = [this](auto&&...) {
            seenThreads.insert(std::this_thread::get_id());
            seenCounts.insert(threadsOfThisProcess());
        };
        for (const char* event : {"start alpha", "stop alpha", "get alpha", "release alpha"}) {
            script.on(event, note);
        }
        log.onRecord(note);
        script.clear();
    }

    ~CallersThread() override
    {
        // What notes the calls goes before the container, which stops its bundles at the end.
        container.unload();
        log.onRecord(nullptr);
    }

    std::set<std::thread::id> seenThreads;
    std::set<std::ptrdiff_t> seenCounts;
    SilentConsole silence;
};

TEST_F(CallersThread, GivenAllOperations_WhenRun_ThenBundlesServicesAndSinksAreCalledOnItAndThereIsNoOther)
{
    const auto before = threadsOfThisProcess();
    const auto bundle = host.bundleIn("libalpha.so");
    const std::string word = "ostrel::test::Word";

    for (const Operation& operation : allOperations()) {
        SCOPED_TRACE(operation.name);
        container.startBundle("libalpha.so");
        container.loadService(word);
        const auto service = bundle.GetRegisteredServices().at(0);
        operation.run({container, {"libalpha.so"}, {bundle.GetLocation()}, {word}, bundle, service}, 0);
    }

    EXPECT_THAT(script.events(), Contains("stop alpha"));
    EXPECT_THAT(script.events(), Contains("release alpha"));
    EXPECT_THAT(seenThreads, ElementsAre(std::this_thread::get_id()));
    EXPECT_THAT(seenCounts, ElementsAre(before));
    EXPECT_EQ(threadsOfThisProcess(), before);
}

} // namespace
} // namespace ostrel::test
