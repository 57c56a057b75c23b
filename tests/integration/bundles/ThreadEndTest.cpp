// What ends the thread in which the container calls it, by pthread_exit(): glibc unwinds the thread through the
// container, and ends the process if anybody stops that.
#include "container/DiagnosticLog.h"
#include "support/ContainerFixture.h"
#include "support/Seams.h"

#include <cppmicroservices/Any.h>
#include <cppmicroservices/AnyMap.h>

#include <gmock/gmock.h>

#include <ostream>
#include <pthread.h>
#include <thread>

namespace ostrel::test {
namespace {

using cppmicroservices::Any;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A value whose text cannot be rendered, since that ends the thread.
struct EndsThread {
    friend std::ostream& operator<<(std::ostream& /*stream*/, const EndsThread& /*value*/) { pthread_exit(nullptr); }
};

class ThreadEnd : public ContainerFixture {
protected:
    /// Runs an operation on a thread of its own, and says whether it returned.
    static bool returns(const std::function<void()>& operation)
    {
        bool returned = false;
        std::thread{[&] {
            operation();
            returned = true;
        }}.join();
        return returned;
    }

    Seams seams;
};

TEST_F(ThreadEnd, GivenInstallationThatEndsTheThread_WhenStarted_ThenItEndsAsIfByAnException)
{
    seams.installBundles = [](const auto&) -> std::vector<cppmicroservices::Bundle> { pthread_exit(nullptr); };
    host.add("alpha");

    EXPECT_FALSE(returns([this] { container.startBundle("libalpha.so"); }));

    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(""));
    seams.installBundles = nullptr;
    container.startBundle("libalpha.so");
    EXPECT_EQ(stateOf("libalpha.so"), active);
}

TEST_F(ThreadEnd, GivenStopThatEndsTheThread_WhenStopped_ThenItEndsAsIfByAnException)
{
    container.startBundle(host.add("alpha"));
    seams.stop = [](cppmicroservices::Bundle&) { pthread_exit(nullptr); };

    EXPECT_FALSE(returns([this] { container.stopBundle("libalpha.so"); }));

    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
    seams.stop = nullptr;
    container.stopBundle("libalpha.so");
    EXPECT_EQ(stateOf("libalpha.so"), resolved);
    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(ThreadEnd, GivenStopThatEndsTheThread_WhenUnloaded_ThenOtherThreadsCanUnload)
{
    container.startBundle(host.add("alpha"));
    seams.stop = [](cppmicroservices::Bundle&) { pthread_exit(nullptr); };

    EXPECT_FALSE(returns([this] { container.unload(); }));

    seams.stop = nullptr;
    container.unload();
    EXPECT_EQ(stateOf("libalpha.so"), resolved);
}

TEST_F(ThreadEnd, GivenDeclarationThatEndsTheThread_WhenChecked_ThenItIsNoFaultOfTheDeclaration)
{
    cppmicroservices::AnyMap alternative{cppmicroservices::AnyMap::ORDERED_MAP};
    alternative["mode"] = EndsThread{};
    const std::vector<Any> declaration{alternative};
    us_container::diagnosticLog().setEnabledSeverities(~0x8U); // so that it is rendered in the comparison

    EXPECT_FALSE(returns([&] { us_container::checkFilter(declaration, {}, "subject"); }));

    EXPECT_THAT(log.records(), IsEmpty());
}

} // namespace
} // namespace ostrel::test
