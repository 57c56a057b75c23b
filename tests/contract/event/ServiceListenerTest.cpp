#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"
#include "contract/event/Seen.h"
#include "contract/service/TestServices.h"

#include <cppmicroservices/ServiceException.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Named;
using contract::Plain;
using contract::Seen;
using contract::textOf;
using ostrel::test::installByManifest;
using ostrel::test::stopAndWait;
using ServiceListeners = ostrel::test::StartedFramework;

const std::shared_ptr<Both> object = std::make_shared<Both>();

TEST_F(ServiceListeners, findAServiceOnceItIsRegistered)
{
    std::size_t found = 0;
    ServiceReferenceU reference;
    context.AddServiceListener([&](ServiceEvent const& event) {
        found = context.GetServiceReferences<Plain>().size();
        reference = event.GetServiceReference();
        EXPECT_EQ("", reference.GetInterfaceId());
    });
    auto const registration = context.RegisterService<Plain>(object);
    EXPECT_EQ(1U, found);
    EXPECT_TRUE(reference == registration.GetReference());
    stopAndWait(framework);
}

TEST_F(ServiceListeners, canStillUseAServiceThatGoes)
{
    auto registration = context.RegisterService<Plain>(object, {{"a", 1}});
    bool called = false;
    context.AddServiceListener([&](ServiceEvent const& event) {
        called = true;
        EXPECT_EQ(ServiceEvent::SERVICE_UNREGISTERING, event.GetType());
        auto const reference = event.GetServiceReference<Plain>();
        EXPECT_TRUE(reference);
        EXPECT_EQ(1, context.GetService(reference)->number());
        EXPECT_TRUE(context.GetServiceReferences<Plain>().empty());
        EXPECT_TRUE(context.GetServiceReferences("", "(a=1)").empty());
    });
    registration.Unregister();
    EXPECT_TRUE(called);
    stopAndWait(framework);
}

TEST_F(ServiceListeners, seeTheNewProperties)
{
    auto registration = context.RegisterService<Plain>(object, {{"a", 1}});
    std::string seen;
    context.AddServiceListener(
        [&](ServiceEvent const& event) { seen = event.GetServiceReference().GetProperty("a").ToString(); });
    registration.SetProperties({{"a", 2}});
    EXPECT_EQ("2", seen);
    stopAndWait(framework);
}

TEST_F(ServiceListeners, mayBeAddedTwice)
{
    int calls = 0;
    ServiceListener const listener = [&calls](ServiceEvent const&) { ++calls; };
    auto first = context.AddServiceListener(listener);
    auto second = context.AddServiceListener(listener);
    auto const registration = context.RegisterService<Plain>(object);
    EXPECT_EQ(2, calls);
    context.RemoveListener(std::move(first));
    auto const another = context.RegisterService<Plain>(object);
    EXPECT_EQ(3, calls);
    context.RemoveListener(std::move(second));
    auto const third = context.RegisterService<Plain>(object);
    EXPECT_EQ(3, calls);
    stopAndWait(framework);
}

TEST_F(ServiceListeners, addedDuringAnEventGetTheNext)
{
    Seen late;
    bool done = false;
    context.AddServiceListener([&](ServiceEvent const&) {
        if (!done) {
            done = true;
            context.AddServiceListener(std::ref(late));
        }
    });
    auto registration = context.RegisterService<Plain>(object);
    EXPECT_EQ("", late.types());
    registration.Unregister();
    EXPECT_EQ("UNREGISTERING", late.types());
    stopAndWait(framework);
}

TEST_F(ServiceListeners, removedDuringAnEventAreCalledNoMore)
{
    // Either of the two is called first, and removes both.
    ListenerToken first;
    ListenerToken second;
    int calls = 0;
    auto const listener = [&](ServiceEvent const&) {
        ++calls;
        context.RemoveListener(std::move(first));
        context.RemoveListener(std::move(second));
    };
    first = context.AddServiceListener(listener);
    second = context.AddServiceListener(listener);
    auto registration = context.RegisterService<Plain>(object);
    EXPECT_EQ(1, calls);
    registration.Unregister();
    EXPECT_EQ(1, calls);
    stopAndWait(framework);
}

TEST_F(ServiceListeners, mayCauseEventsThemselves)
{
    std::vector<std::string> seen;
    bool done = false;
    context.AddServiceListener([&](ServiceEvent const& event) {
        seen.push_back("begin " + event.GetServiceReference().GetProperty("n").ToString());
        if (!done) {
            done = true;
            auto const inner = context.RegisterService<Named>(object, {{"n", 2}});
        }
        seen.push_back("end " + event.GetServiceReference().GetProperty("n").ToString());
    });
    auto const outer = context.RegisterService<Plain>(object, {{"n", 1}});
    EXPECT_EQ((std::vector<std::string>{"begin 1", "begin 2", "end 2", "end 1"}), seen);
    stopAndWait(framework);
}

TEST_F(ServiceListeners, mayUnregisterTheServiceTheyAreToldOf)
{
    ServiceRegistration<Plain> registration;
    Seen seen;
    context.AddServiceListener([&](ServiceEvent const& event) {
        seen(event);
        if (event.GetType() == ServiceEvent::SERVICE_MODIFIED) {
            registration.Unregister();
        }
    });
    registration = context.RegisterService<Plain>(object);
    registration.SetProperties({{"a", 1}});
    EXPECT_EQ("REGISTERED MODIFIED UNREGISTERING", seen.types());
    EXPECT_TRUE(context.GetServiceReferences<Plain>().empty());
    stopAndWait(framework);
}

TEST_F(ServiceListeners, mayUnregisterAServiceThatGoes)
{
    ServiceRegistration<Plain> registration = context.RegisterService<Plain>(object);
    std::string events;
    context.AddServiceListener([&](ServiceEvent const& event) {
        events += textOf(event.GetType()) + ' ';
        if (event.GetType() == ServiceEvent::SERVICE_UNREGISTERING) {
            EXPECT_NO_THROW(registration.Unregister());
            EXPECT_TRUE(event.GetServiceReference());
            EXPECT_TRUE(context.GetService(event.GetServiceReference<Plain>()));
            EXPECT_NO_THROW(registration.SetProperties({{"a", 1}}));
        }
    });
    registration.Unregister();
    EXPECT_EQ("UNREGISTERING MODIFIED ", events);
    EXPECT_THROW(registration.Unregister(), std::logic_error);
    stopAndWait(framework);
}

TEST_F(ServiceListeners, goWhenTheirBundleStops)
{
    auto bundle = installByManifest(context, {"plain"}).at(0);
    bundle.Start();
    auto own = bundle.GetBundleContext();
    Seen mine;
    Seen others;
    own.AddServiceListener(std::ref(mine));
    context.AddServiceListener([&](ServiceEvent const& event) {
        others(event);
        if (event.GetType() == ServiceEvent::SERVICE_UNREGISTERING) {
            EXPECT_EQ(Bundle::STATE_STOPPING, bundle.GetState());
            EXPECT_TRUE(own);
        }
    });
    auto const left = own.RegisterService<Plain>(object);
    bundle.Stop();
    EXPECT_EQ("REGISTERED", mine.types());
    EXPECT_EQ("REGISTERED UNREGISTERING", others.types());
    bundle.Start();
    auto const later = context.RegisterService<Plain>(object);
    EXPECT_EQ("REGISTERED", mine.types());
    stopAndWait(framework);
}

TEST_F(ServiceListeners, mayStopTheirOwnBundle)
{
    auto bundle = installByManifest(context, {"plain"}).at(0);
    bundle.Start();
    int calls = 0;
    bundle.GetBundleContext().AddServiceListener([&](ServiceEvent const&) {
        ++calls;
        bundle.Stop();
    });
    auto registration = context.RegisterService<Plain>(object);
    EXPECT_EQ(Bundle::STATE_RESOLVED, bundle.GetState());
    registration.Unregister();
    EXPECT_EQ(1, calls);
    stopAndWait(framework);
}

TEST(ServiceListenersOfARun, endWithIt)
{
    auto framework = FrameworkFactory().NewFramework();
    framework.Start();
    Seen seen;
    auto context = framework.GetBundleContext();
    context.AddServiceListener(std::ref(seen));
    auto bundle = installByManifest(context, {"plain"}).at(0);
    bundle.Start();
    auto const ofBundle = bundle.GetBundleContext().RegisterService<Plain>(object);
    auto ofSystem = context.RegisterService<Plain>(object);
    stopAndWait(framework);
    EXPECT_EQ("REGISTERED REGISTERED UNREGISTERING", seen.typesAndClear());
    framework.Start();
    Seen next;
    framework.GetBundleContext().AddServiceListener(std::ref(next));
    auto const later = framework.GetBundleContext().RegisterService<Plain>(object);
    EXPECT_EQ("", seen.types());
    EXPECT_EQ("REGISTERED", next.typesAndClear());
    // The stop unregisters nothing of the framework's own; handles of the former run still do.
    ofSystem.SetProperties({{"a", 1}});
    ofSystem.Unregister();
    EXPECT_EQ("MODIFIED UNREGISTERING", next.types());
    stopAndWait(framework);
}

} // namespace
