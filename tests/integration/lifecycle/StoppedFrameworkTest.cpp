#include "support/ContainerFixture.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <ostream>
#include <sstream>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::ThrowsMessage;

struct Operation {
    std::string name;
    std::function<void(MicroServicesContainer&)> run;
    friend std::ostream& operator<<(std::ostream& stream, const Operation& operation)
    {
        return stream << operation.name;
    }
};

/// A container that started a bundle and loaded a service, over a framework that was stopped since.
class StoppedFramework : public ContainerFixture {
protected:
    void SetUp() override
    {
        container.startBundle(host.add("alpha"));
        container.loadService("(test.word=alpha)");
        host.stop();
        log.clear();
        script.clear();
    }
};

class HarmlessOperation : public StoppedFramework, public ::testing::WithParamInterface<Operation> {};
class FailingOperation : public StoppedFramework, public ::testing::WithParamInterface<Operation> {};

TEST_P(HarmlessOperation, GivenStoppedFramework_WhenRun_ThenNothingIsThrown)
{
    EXPECT_NO_THROW(GetParam().run(container));
}

TEST_P(HarmlessOperation, GivenStoppedFramework_WhenRun_ThenNothingIsLogged)
{
    GetParam().run(container);

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(HarmlessOperation, GivenStoppedFramework_WhenRun_ThenTheBundleRecordsStayAsTheyAre)
{
    GetParam().run(container);

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
}

TEST_P(FailingOperation, GivenStoppedFramework_WhenRun_ThenTheFrameworksErrorReachesTheCaller)
{
    EXPECT_THAT([&] { GetParam().run(container); },
                ThrowsMessage<std::runtime_error>(HasSubstr("The bundle context is no longer valid")));
}

TEST_P(FailingOperation, GivenStoppedFramework_WhenRun_ThenTheLockIsFree)
{
    EXPECT_ANY_THROW(GetParam().run(container));

    EXPECT_TRUE(lockIsFree(container));
}

TEST_P(FailingOperation, GivenStoppedFramework_WhenRun_ThenNothingIsLogged)
{
    EXPECT_ANY_THROW(GetParam().run(container));

    EXPECT_THAT(log.records(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Each, HarmlessOperation,
    ::testing::Values(Operation{"stopBundle", [](auto& container) { container.stopBundle("libalpha.so"); }},
                      Operation{"stopBundle_unknown", [](auto& container) { container.stopBundle("unknown"); }},
                      Operation{"stopBundles", [](auto& container) { container.stopBundles({"libalpha.so"}); }},
                      Operation{"stopAllBundles", [](auto& container) { container.stopAllBundles(); }},
                      Operation{"unload", [](auto& container) { container.unload(); }},
                      Operation{"unloadAllServices", [](auto& container) { container.unloadAllServices(); }}),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Each, FailingOperation,
    ::testing::Values(
        Operation{"startBundle", [](auto& container) { container.startBundle("libalpha.so"); }},
        Operation{"startBundles", [](auto& container) { container.startBundles(std::vector<std::string>{"new.so"}); }},
        Operation{"startAllBundles", [](auto& container) { container.startAllBundles(); }},
        Operation{"loadService", [](auto& container) { container.loadService("(test.word=alpha)"); }},
        Operation{"loadServices", [](auto& container) { container.loadServices(std::vector<std::string>{"any"}); }},
        Operation{"reload", [](auto& container) { container.reload(); }},
        Operation{"getMicroServicesString", [](auto& container) { container.getMicroServicesString(); }},
        Operation{"printAllBundles",
                  [](auto& container) {
                      std::stringstream stream;
                      container.printAllBundles(stream);
                  }},
        Operation{"printAllServices",
                  [](auto& container) {
                      std::stringstream stream;
                      container.printAllServices(stream);
                  }}),
    [](const auto& info) { return info.param.name; });

TEST_F(StoppedFramework, GivenHeldService_WhenUnloaded_ThenItIsNoLongerHeld)
{
    container.unload();

    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
}

TEST_F(StoppedFramework, GivenHeldService_WhenListed_ThenItIsStillThere)
{
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
}

TEST(StoppedFrameworkAndDestructor, GivenHeldServiceAndStartedBundle_WhenDestroyed_ThenNothingIsLogged)
{
    const RecordCapture log;
    Host host;
    {
        MicroServicesContainer container{
            host.context(), host.bundleDirectory(), {host.add("alpha")}, {"ostrel::test::Word"}};
        ASSERT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
        host.stop();
    }
    EXPECT_THAT(log.messages(), ElementsAre("Loaded services with name: 'ostrel::test::Word'"));
}

TEST(StoppedFrameworkAndDestructor, GivenHostThatIsGone_WhenDestroyed_ThenNothingIsLogged)
{
    const RecordCapture log;
    {
        auto host = std::make_unique<Host>();
        MicroServicesContainer container{
            host->context(), host->bundleDirectory(), {host->add("alpha")}, {"ostrel::test::Word"}};
        host.reset();
    }
    EXPECT_THAT(log.messages(), ElementsAre("Loaded services with name: 'ostrel::test::Word'"));
}

} // namespace
} // namespace ostrel::test
