// Bundles that throw, each place with an exception that the framework knows, an int, and an object of a class of the
// bundle's own library.
#include "bundles/shared/WildValue.h"
#include "contract/robust/WildFixture.h"

namespace {

using namespace cppmicroservices;
using namespace ostrel::test;

class Throwing : public WildFixture, public ::testing::WithParamInterface<int> {
protected:
    void throwAt(std::string const& event)
    {
        script.on(event, [kind = GetParam()](auto) { throwFault(kind); });
    }
};

INSTANTIATE_TEST_SUITE_P(faults, Throwing, ::testing::ValuesIn(faults));

TEST_P(Throwing, fromTheConstructorFailsTheStart)
{
    throwAt("construct wild");
    auto bundle = install("wild");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ("Bundle wild (location= " + bundle.GetLocation() + ") start failed: " + faultText(GetParam()),
                  thrownText<std::runtime_error>([&] { bundle.Start(); }));
        EXPECT_EQ(resolved, bundle.GetState());
    }
    script.on("construct wild", nullptr);
    bundle.Start();
    EXPECT_EQ(active, bundle.GetState());
    EXPECT_EQ(0, countOf("destroy wild")); // what was never made is not destroyed
}

TEST_P(Throwing, fromStartFailsTheStart)
{
    throwAt("start wild");
    auto bundle = install("wild");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ("Bundle wild (location= " + bundle.GetLocation() + ") start failed: " + faultText(GetParam()),
                  thrownText<std::runtime_error>([&] { bundle.Start(); }));
        EXPECT_EQ(resolved, bundle.GetState());
        EXPECT_FALSE(host.context().GetServiceReference<Word>());
    }
    script.on("start wild", nullptr);
    bundle.Start();
    EXPECT_EQ(active, bundle.GetState());
    bundle.Stop();
    host.stop();
    EXPECT_EQ(3, countOf("construct wild"));
    EXPECT_EQ(3, countOf("destroy wild"));
}

TEST_P(Throwing, fromStopIsReportedOnceAllIsDone)
{
    throwAt("stop wild");
    auto bundle = start("wild");
    EXPECT_EQ("Bundle wild (location=" + bundle.GetLocation() +
                  "), BundleActivator::Stop() failed: " + faultText(GetParam()),
              thrownText<std::runtime_error>([&] { bundle.Stop(); }));
    EXPECT_EQ(resolved, bundle.GetState());
    EXPECT_EQ(1, countOf("destroy wild"));
    EXPECT_FALSE(host.context().GetServiceReference<Word>());
    bundle.Start();
    bundle.Uninstall();
    EXPECT_EQ(uninstalled, bundle.GetState());
}

TEST_P(Throwing, fromStopDoesNotHinderTheStopOfTheFramework)
{
    throwAt("stop wild");
    throwAt("stop wild_too");
    auto bundle = start("wild");
    start("wild_too");
    host.stop();
    EXPECT_EQ(installed, bundle.GetState());
    EXPECT_EQ(1, countOf("destroy wild"));
    EXPECT_EQ(1, countOf("destroy wild_too"));
}

TEST_P(Throwing, fromTheFactoryGivesNoService)
{
    auto bundle = start("wild");
    auto const word = wordOf(bundle);
    for (std::string const event : {"get wild", "make wild"}) {
        throwAt(event);
        if (GetParam() == 0) {
            EXPECT_EQ(nullptr, host.context().GetService(word));
        } else {
            EXPECT_ANY_THROW(host.context().GetService(word));
        }
        script.on(event, nullptr);
        auto const service = host.context().GetService(word);
        ASSERT_NE(nullptr, service);
        EXPECT_EQ("wild", service->text());
    }
    EXPECT_EQ(2, countOf("release wild"));
    EXPECT_EQ(2, countOf("end wild"));
}

TEST_P(Throwing, fromThePropertysCopyRegistersNothing)
{
    throwAt("copy value");
    auto const own = std::make_shared<ServiceProperties>();
    struct Plain {};
    {
        auto const hooks = host.context().GetService(host.context().GetServiceReference<ActivatorHooks>());
        script.on("copy value", nullptr);
        own->emplace("value", Any(WildValue("value", hooks)));
    }
    auto context = host.context();
    auto const before = context.GetServiceReferences("").size();
    throwAt("copy value");
    EXPECT_ANY_THROW(context.RegisterService<Plain>(std::make_shared<Plain>(), *own));
    EXPECT_EQ(before, context.GetServiceReferences("").size());
    script.on("copy value", nullptr);
    auto registration = context.RegisterService<Plain>(std::make_shared<Plain>(), *own);
    throwAt("copy value");
    EXPECT_ANY_THROW(registration.SetProperties(*own));
    EXPECT_ANY_THROW(registration.GetReference().GetProperty("value"));
    script.on("copy value", nullptr);
    EXPECT_FALSE(registration.GetReference().GetProperty("value").Empty());
    registration.Unregister();
}

} // namespace
