// Removing listeners: by token, and in the ways that are kept for older sources.
#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"
#include "contract/event/Seen.h"
#include "contract/service/TestServices.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Plain;
using contract::Seen;
using ostrel::test::installByManifest;
using ostrel::test::stopAndWait;
using ostrel::test::thrownText;

static_assert(!std::is_copy_constructible_v<ListenerToken> && !std::is_copy_assignable_v<ListenerToken>);
static_assert(std::is_nothrow_move_constructible_v<ListenerToken> && std::is_nothrow_move_assignable_v<ListenerToken>);
static_assert(std::is_same_v<ListenerTokenId, std::uint64_t>);

int plainCalls = 0;

void plainListener(ServiceEvent const&)
{
    ++plainCalls;
}

void plainBundleListener(BundleEvent const&)
{
    ++plainCalls;
}

struct Receiver {
    void onService(ServiceEvent const&) { ++calls; }
    void onServiceToo(ServiceEvent const&) { otherCalls++; }
    void onBundle(BundleEvent const&) { ++calls; }
    void onFramework(FrameworkEvent const&) { ++calls; }

    int calls = 0;
    int otherCalls = 0;
};

class Tokens : public ostrel::test::StartedFramework {
protected:
    Tokens() { plainCalls = 0; }

    /// One service event.
    void causeEvent() { auto const kept = context.RegisterService<Plain>(std::make_shared<Both>(), {{"a", 1}}); }
};

TEST_F(Tokens, moveAndTellWhetherTheyHoldOne)
{
    EXPECT_FALSE(ListenerToken());
    auto token = context.AddServiceListener(plainListener);
    EXPECT_TRUE(token);
    ListenerToken moved(std::move(token));
    EXPECT_TRUE(moved);
    EXPECT_FALSE(token);
    token = std::move(moved);
    EXPECT_TRUE(token);
    EXPECT_FALSE(moved);
    context.RemoveListener(std::move(moved));
    causeEvent();
    EXPECT_EQ(1, plainCalls);
    context.RemoveListener(std::move(token));
    EXPECT_FALSE(token);
    context.RemoveListener(std::move(token));
    context.RemoveListener(ListenerToken());
    causeEvent();
    EXPECT_EQ(1, plainCalls);
    stopAndWait(framework);
}

TEST_F(Tokens, removeNothingWhenTheyGo)
{
    {
        EXPECT_TRUE(context.AddServiceListener(plainListener));
    }
    causeEvent();
    EXPECT_EQ(1, plainCalls);
    stopAndWait(framework);
}

TEST_F(Tokens, removeListenersOfEachKind)
{
    Seen seen;
    auto service = context.AddServiceListener(std::ref(seen));
    auto bundle = context.AddBundleListener(std::ref(seen));
    auto ofFramework = context.AddFrameworkListener(std::ref(seen));
    context.RemoveListener(std::move(service));
    context.RemoveListener(std::move(bundle));
    context.RemoveListener(std::move(ofFramework));
    context.AddServiceListener([](ServiceEvent const&) { throw 1; });
    causeEvent();
    installByManifest(context, {"plain"});
    EXPECT_EQ("", seen.types());
    stopAndWait(framework);
}

TEST_F(Tokens, areOfNoUseToAnotherContext)
{
    auto bundle = installByManifest(context, {"plain"}).at(0);
    bundle.Start();
    auto own = bundle.GetBundleContext();
    auto token = context.AddServiceListener(plainListener);
    auto ofBundle = own.AddBundleListener(plainBundleListener);
    own.RemoveListener(std::move(token));
    EXPECT_FALSE(token);
    context.RemoveListener(std::move(ofBundle));
    own.RemoveServiceListener(plainListener);
    causeEvent();
    EXPECT_EQ(1, plainCalls);
    bundle.Stop();
    EXPECT_EQ(2, plainCalls);
    stopAndWait(framework);
}

TEST_F(Tokens, ofTheLastRunRemoveNothing)
{
    auto bundle = installByManifest(context, {"plain"}).at(0);
    bundle.Start();
    auto token = bundle.GetBundleContext().AddServiceListener(plainListener);
    bundle.Stop();
    bundle.Start();
    bundle.GetBundleContext().AddServiceListener(plainListener);
    bundle.GetBundleContext().RemoveListener(std::move(token));
    causeEvent();
    EXPECT_EQ(1, plainCalls);
    stopAndWait(framework);
}

TEST(ListenersWithoutContext, areRefused)
{
    auto framework = FrameworkFactory().NewFramework();
    framework.Start();
    auto stopped = framework.GetBundleContext();
    auto token = stopped.AddServiceListener(plainListener);
    stopAndWait(framework);
    std::string const text = "The bundle context is no longer valid";
    BundleContext none;
    for (auto* context : {&none, &stopped}) {
        auto const refusal = [context](auto call) { return thrownText<std::runtime_error>([&] { call(*context); }); };
        EXPECT_EQ(text, refusal([](auto& c) { c.AddServiceListener(plainListener); }));
        EXPECT_EQ(text, refusal([](auto& c) { c.AddServiceListener(plainListener, "("); }));
        EXPECT_EQ(text, refusal([](auto& c) { c.AddBundleListener(plainBundleListener); }));
        EXPECT_EQ(text, refusal([](auto& c) { c.AddFrameworkListener(FrameworkListener()); }));
        EXPECT_EQ(text, refusal([](auto& c) { c.RemoveListener(ListenerToken()); }));
        EXPECT_EQ(text, refusal([](auto& c) { c.RemoveServiceListener(plainListener); }));
        EXPECT_EQ(text, refusal([](auto& c) { c.RemoveBundleListener(plainBundleListener); }));
        EXPECT_EQ(text, refusal([](auto& c) { c.RemoveFrameworkListener(FrameworkListener()); }));
    }
    EXPECT_EQ(text, thrownText<std::runtime_error>([&] { stopped.RemoveListener(std::move(token)); }));
}

TEST_F(Tokens, areNotNeededForPlainFunctions)
{
    context.AddServiceListener(plainListener);
    context.AddServiceListener(plainListener);
    context.RemoveServiceListener(plainListener);
    causeEvent();
    EXPECT_EQ(1, plainCalls);
    context.RemoveServiceListener(plainListener);
    context.RemoveServiceListener(plainListener);
    causeEvent();
    EXPECT_EQ(1, plainCalls);

    context.AddBundleListener(plainBundleListener);
    context.AddBundleListener(plainBundleListener);
    context.RemoveBundleListener(plainBundleListener);
    installByManifest(context, {"plain"});
    EXPECT_EQ(2, plainCalls);
    stopAndWait(framework);
}

TEST_F(Tokens, areNotNeededForMemberFunctions)
{
    Receiver one;
    Receiver two;
    context.AddServiceListener(&one, &Receiver::onService);
    context.AddServiceListener(&two, &Receiver::onService);
    causeEvent();
    context.RemoveServiceListener(&one, &Receiver::onService);
    causeEvent();
    EXPECT_EQ(1, one.calls);
    EXPECT_EQ(2, two.calls);
    context.RemoveServiceListener(&two, &Receiver::onService);

    context.AddBundleListener(&one, &Receiver::onBundle);
    context.RemoveBundleListener(&two, &Receiver::onBundle);
    auto bundle = installByManifest(context, {"plain"}).at(0);
    EXPECT_EQ(2, one.calls);
    context.RemoveBundleListener(&one, &Receiver::onBundle);

    context.AddFrameworkListener(&two, &Receiver::onFramework);
    auto thrower = context.AddServiceListener([](ServiceEvent const&) { throw 1; });
    causeEvent();
    EXPECT_EQ(3, two.calls);
    context.RemoveFrameworkListener(&two, &Receiver::onFramework);
    causeEvent();
    EXPECT_EQ(3, two.calls);
    context.RemoveListener(std::move(thrower));
    stopAndWait(framework);
}

TEST_F(Tokens, ofAReceiverEndWithItsNextListener)
{
    Receiver receiver;
    auto first = context.AddServiceListener(&receiver, &Receiver::onService);
    auto second = context.AddServiceListener(&receiver, &Receiver::onService, "(a=2)");
    causeEvent();
    EXPECT_EQ(0, receiver.calls);
    auto third = context.AddServiceListener(&receiver, &Receiver::onService, "(a=1)");
    context.RemoveListener(std::move(first));
    context.RemoveListener(std::move(second));
    causeEvent();
    EXPECT_EQ(1, receiver.calls);
    context.AddServiceListener(&receiver, &Receiver::onServiceToo);
    causeEvent();
    EXPECT_EQ(1, receiver.calls);
    EXPECT_EQ(1, receiver.otherCalls);
    context.RemoveListener(std::move(third));
    causeEvent();
    EXPECT_EQ(2, receiver.otherCalls);
    context.RemoveServiceListener(&receiver, &Receiver::onServiceToo);
    causeEvent();
    EXPECT_EQ(2, receiver.otherCalls);
    stopAndWait(framework);
}

TEST(ListenerFunctors, bindMemberFunctions)
{
    Receiver receiver;
    ServiceListenerMemberFunctor(&receiver, &Receiver::onService)(ServiceEvent());
    BundleListenerMemberFunctor(&receiver, &Receiver::onBundle)(BundleEvent());
    BindFrameworkListenerToFunctor(&receiver, &Receiver::onFramework)(FrameworkEvent());
    EXPECT_EQ(3, receiver.calls);
    ServiceListener const listener = [](ServiceEvent const&) {};
    EXPECT_EQ(std::hash<ServiceListener>()(listener), std::hash<ServiceListener>()(listener));
}

} // namespace
