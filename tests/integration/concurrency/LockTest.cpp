// What holds for each public operation alike: it waits for the lock while another thread holds it, but not when the
// same thread does.
#include "integration/concurrency/Operations.h"
#include "integration/services/ServicesFixture.h"
#include "integration/support/LockHolder.h"

#include <memory>
#include <string>
#include <utility>

namespace ostrel::test {
namespace {

/// Runs a function when it is destroyed.
class DyingDancer final : public Dancer {
public:
    explicit DyingDancer(std::function<void()> atEnd) : m_atEnd(std::move(atEnd)) {}
    DyingDancer(const DyingDancer&) = delete;
    DyingDancer& operator=(const DyingDancer&) = delete;
    ~DyingDancer() override { m_atEnd(); }

private:
    std::function<void()> m_atEnd;
};

/// A container with a started bundle, whose Greeter is loaded under its interface.
class EachOperation : public ServicesFixture, public ::testing::WithParamInterface<Operation> {
protected:
    EachOperation()
    {
        addArchive(host, "alpha.zip", {componentWith("alpha", "component.alpha")});
        container.startBundle("alpha.zip");
        bundle = host.bundleIn("alpha.zip");
        service = registerGreeter(bundle.GetBundleContext());
        container.loadService(greeterName);
    }

    void run() const
    {
        GetParam().run({container, {"alpha.zip"}, {bundle.GetLocation()}, {greeterName}, bundle, service}, 0);
    }

    mutable us_container::MicroServicesContainer container{host.context(), host.bundleDirectory()};
    cppmicroservices::Bundle bundle;
    ServiceReferenceU service;
    SilentConsole silence;
};

std::string nameOf(const ::testing::TestParamInfo<Operation>& info)
{
    return info.param.name;
}

TEST_P(EachOperation, GivenLockHeldByAnotherThread_WhenRun_ThenItWaits)
{
    LockHolder holder{container, host.context()};
    const OtherThread waiting{[this] { run(); }};
    EXPECT_FALSE(waiting.finishesWithin(glance));

    holder.letGo();

    EXPECT_TRUE(waiting.finishesWithin());
}

TEST_P(EachOperation, GivenCallFromAServiceFactory_WhenRun_ThenItNeedNotWaitForItsOwnThread)
{
    bool finished = false;
    registerFactory<Dancer>(host.context(), [&] {
        run();
        finished = true;
        return newMap<Dancer>();
    });
    const OtherThread loading{[this] { container.loadService(dancerName); }};

    ASSERT_TRUE(loading.finishesWithin());
    EXPECT_TRUE(finished);
}

TEST_P(EachOperation, GivenCallFromAServicesDestructor_WhenRun_ThenItNeedNotWait)
{
    bool finished = false;
    const auto atEnd = [&] {
        run();
        finished = true;
    };
    registerFactory<Dancer>(host.context(), [&] {
        return cppmicroservices::MakeInterfaceMap<Dancer>(std::make_shared<DyingDancer>(atEnd));
    });
    container.loadService(dancerName);
    const OtherThread unloading{[this] { container.unloadService(dancerName); }};

    ASSERT_TRUE(unloading.finishesWithin());
    EXPECT_TRUE(finished);
}

TEST_P(EachOperation, GivenNothingAmiss_WhenRun_ThenTheLockIsFreeAfterwards)
{
    run();

    EXPECT_TRUE(lockIsFree(container));
}

INSTANTIATE_TEST_SUITE_P(Container, EachOperation, ::testing::ValuesIn(allOperations()), nameOf);

} // namespace
} // namespace ostrel::test
