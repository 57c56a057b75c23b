// Where the other framework leaves open, or gets wrong, which listeners are called.
#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"
#include "contract/event/Seen.h"
#include "contract/service/TestServices.h"

#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Named;
using contract::Plain;
using contract::Seen;
using ostrel::test::installByManifest;
using ostrel::test::stopAndWait;
using ostrel::test::thrownText;
using DefinedListeners = ostrel::test::StartedFramework;

const std::shared_ptr<Both> object = std::make_shared<Both>();

TEST(DefaultServiceEvent, isOfNoService)
{
    EXPECT_EQ(ServiceEvent::SERVICE_UNREGISTERING, ServiceEvent().GetType());
    EXPECT_FALSE(ServiceEvent().GetServiceReference());
    EXPECT_FALSE(ServiceEvent().GetServiceReference<Plain>());
}

TEST_F(DefinedListeners, areCalledFromTheLastAddedToTheFirst)
{
    std::string seen;
    std::vector<std::string> const filters = {
        "",      "(objectclass=contract::Plain)", "(objectclass=my.named)", "",
        "(a=1)", "(objectclass=contract::Plain)", "(service.id>=1)",        "(a=1)"};
    for (std::size_t i = 0; i < filters.size(); ++i) {
        context.AddServiceListener([&seen, i](ServiceEvent const&) { seen += std::to_string(i); }, filters[i]);
        context.AddBundleListener([&seen, i](BundleEvent const&) { seen += std::to_string(i); });
    }
    auto const registration = context.RegisterService<Plain, Named>(object, {{"a", 1}});
    EXPECT_EQ("76543210", seen);
    seen.clear();
    installByManifest(context, {"plain"});
    EXPECT_EQ("76543210", seen);
    stopAndWait(framework);
}

TEST_F(DefinedListeners, areCalledInThatOrderHoweverManyClassesTheirFiltersName)
{
    std::string seen;
    auto const classes = std::make_shared<InterfaceMap>();
    std::vector<std::string> filters{"", "(a=1)"};
    for (char name = 'a'; name <= 'h'; ++name) {
        classes->emplace(std::string(1, name), object);
        filters.push_back("(objectclass=" + std::string(1, name) + ")");
        filters.push_back(filters.back());
    }
    filters.insert(filters.end(), {"(objectclass=z)", "", "(&(objectclass=c)(a=2))"});
    ListenerToken removed;
    for (std::size_t i = 0; i < filters.size(); ++i) {
        auto token = context.AddServiceListener(
            [&, i](ServiceEvent const& event) {
                seen += std::to_string(i) + ' ';
                if (i == 5 && event.GetType() == ServiceEvent::SERVICE_REGISTERED) {
                    context.RemoveListener(std::move(removed));
                    context.AddServiceListener([&seen](ServiceEvent const&) { seen += "new "; });
                }
            },
            filters[i]);
        if (i == 4) {
            removed = std::move(token);
        }
    }
    auto registration = context.RegisterService(InterfaceMapConstPtr(classes), {{"a", 1}});
    EXPECT_EQ("19 17 16 15 14 13 12 11 10 9 8 7 6 5 3 2 1 0 ", seen);
    seen.clear();
    registration.SetProperties({{"a", 2}});
    EXPECT_EQ("new 20 19 17 16 15 14 13 12 11 10 9 8 7 6 5 3 2 0 1 ", seen); // 1 no longer matches
    stopAndWait(framework);
}

TEST_F(DefinedListeners, ofBundleEventsRemovedDuringAnEventAreCalledNoMore)
{
    int calls = 0;
    ListenerToken first = context.AddBundleListener([&calls](BundleEvent const&) { ++calls; });
    context.AddBundleListener([&](BundleEvent const&) { context.RemoveListener(std::move(first)); });
    installByManifest(context, {"plain"});
    EXPECT_EQ(0, calls);
    stopAndWait(framework);
}

TEST_F(DefinedListeners, ofFrameworkEventsRemovedDuringAnEventAreCalledNoMore)
{
    int calls = 0;
    ListenerToken first = context.AddFrameworkListener([&calls](FrameworkEvent const&) { ++calls; });
    context.AddFrameworkListener([&](FrameworkEvent const&) { context.RemoveListener(std::move(first)); });
    context.AddServiceListener([](ServiceEvent const&) { throw 1; });
    auto const registration = context.RegisterService<Plain>(object);
    EXPECT_EQ(0, calls);
}

TEST_F(DefinedListeners, areToldApartByTheTypeOfTheirCallable)
{
    std::string seen;
    ServiceListener const first = [&seen](ServiceEvent const&) { seen += '1'; };
    ServiceListener const second = [&seen](ServiceEvent const&) { seen += '2'; };
    context.AddServiceListener(first);
    context.AddServiceListener(second);
    context.RemoveServiceListener([](ServiceEvent const&) {});
    context.RemoveServiceListener(first);
    auto const registration = context.RegisterService<Plain>(object);
    EXPECT_EQ("2", seen);
}

TEST_F(DefinedListeners, ofSeveralReceiversAreToldApartForFrameworkEventsToo)
{
    struct Receiver {
        void onEvent(FrameworkEvent const&) { ++calls; }
        int calls = 0;
    };
    Receiver one;
    Receiver two;
    context.AddFrameworkListener(&one, &Receiver::onEvent);
    context.AddFrameworkListener(&two, &Receiver::onEvent);
    context.RemoveFrameworkListener(&one, &Receiver::onEvent);
    context.AddServiceListener([](ServiceEvent const&) { throw 1; });
    auto const registration = context.RegisterService<Plain>(object);
    EXPECT_EQ(0, one.calls);
    EXPECT_EQ(1, two.calls);
}

TEST_F(DefinedListeners, withAChoiceOfClassesHearOfEach)
{
    Seen seen;
    context.AddServiceListener(std::ref(seen), "(|(objectclass=contract::Plain)(objectclass=my.named))");
    auto const plain = context.RegisterService<Plain>(object);
    auto const named = context.RegisterService<Named>(object);
    auto const both = context.RegisterService<Plain, Named>(object);
    EXPECT_EQ("REGISTERED REGISTERED REGISTERED", seen.types());
}

TEST_F(DefinedListeners, addedWhileTheirBundleStopsGoWithIt)
{
    auto bundle = installByManifest(context, {"plain"}).at(0);
    bundle.Start();
    auto own = bundle.GetBundleContext();
    auto const left = own.RegisterService<Plain>(object);
    Seen late;
    context.AddServiceListener([&](ServiceEvent const&) {
        own.AddBundleListener(std::ref(late));
        EXPECT_EQ("The bundle context is no longer valid",
                  thrownText<std::runtime_error>([&] { own.RegisterService<Named>(object); }));
    });
    bundle.Stop();
    bundle.Start();
    EXPECT_EQ("", late.types());
    stopAndWait(framework);
}

TEST_F(DefinedListeners, mayLetGoOfTheRegistrationInUse)
{
    auto registration = std::make_unique<ServiceRegistration<Plain>>(context.RegisterService<Plain>(object));
    auto const reference = registration->GetReference();
    context.AddServiceListener([&registration](ServiceEvent const&) { registration.reset(); });
    registration->SetProperties({{"a", 1}});
    EXPECT_FALSE(registration);
    EXPECT_EQ(1, any_cast<int>(reference.GetProperty("a")));
    registration = std::make_unique<ServiceRegistration<Plain>>(context.RegisterService<Plain>(object));
    registration->Unregister();
    EXPECT_FALSE(registration);
    stopAndWait(framework);
}

TEST_F(DefinedListeners, areSafeFromTokensOfOtherFrameworks)
{
    auto other = FrameworkFactory().NewFramework();
    other.Start();
    int calls = 0;
    auto token = other.GetBundleContext().AddServiceListener([](ServiceEvent const&) {});
    context.AddServiceListener([&calls](ServiceEvent const&) { ++calls; });
    context.RemoveListener(std::move(token));
    auto const registration = context.RegisterService<Plain>(object);
    EXPECT_EQ(1, calls);
    stopAndWait(other);
}

TEST(FaultsOfFrameworkListeners, areNotedInTheDiagnostics)
{
    std::ostringstream log;
    FrameworkConfiguration configuration;
    configuration["org.cppmicroservices.framework.log"] = true;
    auto framework = FrameworkFactory().NewFramework(configuration, &log);
    framework.Init();
    framework.GetBundleContext().AddFrameworkListener([](FrameworkEvent const&) { throw std::runtime_error("oh"); });
    framework.GetBundleContext().AddFrameworkListener([](FrameworkEvent const&) { throw 42; });
    framework.Start();
    stopAndWait(framework);
    EXPECT_NE(std::string::npos, log.str().find("Framework listener in system_bundle threw an exception: oh\n"));
    EXPECT_NE(std::string::npos, log.str().find("Framework listener in system_bundle threw an exception: unknown\n"));
}

} // namespace
