// The listeners of a bundle with an activator, while it starts and stops.
#include "contract/event/Seen.h"
#include "contract/service/TestServices.h"
#include "support/BundleScript.h"
#include "support/Host.h"

#include <cppmicroservices/ServiceRegistration.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Plain;
using contract::Seen;
using contract::textOf;
using ostrel::test::BundleScript;

class ListenersOfBundles : public ostrel::test::HostFixture {
protected:
    Bundle install(std::string const& target)
    {
        return host.context().InstallBundles(host.locationOf(host.add(target))).at(0);
    }

    BundleScript script{host.context()};
    Seen service;
    Seen bundle;
};

TEST_F(ListenersOfBundles, hearAllThatHappensInsideTheActivator)
{
    auto alpha = install("alpha");
    script.on("start alpha", [this](BundleContext own) {
        own.AddServiceListener(std::ref(service), "(objectclass=contract::Plain)");
        own.AddBundleListener(std::ref(bundle));
        auto const left = own.RegisterService<Plain>(std::make_shared<Both>());
    });
    script.on("stop alpha",
              [](BundleContext own) { auto const late = own.RegisterService<Plain>(std::make_shared<Both>()); });
    alpha.Start();
    EXPECT_EQ("REGISTERED", service.types());
    EXPECT_EQ("STARTED", bundle.types());
    alpha.Stop();
    EXPECT_EQ("REGISTERED REGISTERED", service.types());
    EXPECT_EQ("STARTED STOPPING", bundle.types());
    host.stop();
}

TEST_F(ListenersOfBundles, goAfterAFailedStart)
{
    auto alpha = install("alpha");
    script.on("start alpha", [this](BundleContext own) {
        own.AddServiceListener(std::ref(service), "(objectclass=contract::Plain)");
        own.AddBundleListener(std::ref(bundle));
        auto const left = own.RegisterService<Plain>(std::make_shared<Both>());
        throw std::runtime_error("planned");
    });
    std::vector<std::string> seen;
    host.context().AddBundleListener([&](BundleEvent const& event) { seen.push_back(textOf(event.GetType())); });
    host.context().AddServiceListener([&](ServiceEvent const& event) { seen.push_back(textOf(event.GetType())); },
                                      "(objectclass=contract::Plain)");
    EXPECT_THROW(alpha.Start(), std::runtime_error);
    EXPECT_EQ("REGISTERED", service.types());
    EXPECT_EQ("STOPPING", bundle.types());
    EXPECT_EQ((std::vector<std::string>{"RESOLVED", "STARTING", "REGISTERED", "STOPPING", "UNREGISTERING", "STOPPED"}),
              seen);
    host.stop();
}

TEST_F(ListenersOfBundles, hearOfAFailedStopOnlyFromTheFramework)
{
    auto faulty = install("stop_throws");
    std::vector<std::string> seen;
    host.context().AddFrameworkListener([&seen](FrameworkEvent const& event) {
        try {
            std::rethrow_exception(event.GetThrowable());
        } catch (std::runtime_error const& e) {
            seen.push_back(textOf(event.GetType()) + "|" + event.GetMessage() + "|" +
                           event.GetBundle().GetSymbolicName() + "|" + e.what());
        }
    });
    std::string const reason = "Bundle stop_throws (location=" + faulty.GetLocation() +
                               "), BundleActivator::Stop() failed: planned fault: stop_throws";
    faulty.Start();
    EXPECT_THROW(faulty.Stop(), std::runtime_error);
    EXPECT_TRUE(seen.empty());
    faulty.Start();
    host.stop();
    EXPECT_EQ((std::vector<std::string>{"ERROR||stop_throws|" + reason}), seen);
    host.stop();
}

TEST_F(ListenersOfBundles, hearNothingOfAFailedStart)
{
    auto faulty = install("start_throws");
    int events = 0;
    host.context().AddFrameworkListener([&events](FrameworkEvent const&) { ++events; });
    EXPECT_THROW(faulty.Start(), std::runtime_error);
    EXPECT_EQ(0, events);
    host.stop();
}

} // namespace
