#include "memory/World.h"

#include "support/FailingMemory.h"
#include "support/TestBundles.h"

#include <cppmicroservices/Constants.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <filesystem>
#include <sstream>

namespace ostrel::test {

using namespace cppmicroservices;

namespace {

std::string copyOf(std::string const& target, TemporaryDirectory const& directory)
{
    auto const file = testBundle(target);
    auto const copy = directory.path() / file.filename();
    std::filesystem::copy_file(file, copy);
    return copy.string();
}

void tellServices(std::ostream& text, std::vector<ServiceReferenceU> const& references)
{
    std::multiset<std::string> services;
    for (auto const& reference : references) {
        std::ostringstream one;
        one << reference.GetProperty(Constants::OBJECTCLASS).ToString() << " rank "
            << reference.GetProperty(Constants::SERVICE_RANKING).ToStringNoExcept() << " used by";
        for (auto const& user : reference.GetUsingBundles()) {
            one << ' ' << user.GetSymbolicName();
        }
        services.insert(one.str());
    }
    for (auto const& service : services) {
        text << "    " << service << '\n';
    }
}

} // namespace

World::World()
{
    FrameworkConfiguration configuration;
    configuration[Constants::FRAMEWORK_STORAGE] = (directory.path() / "storage").string();
    framework = FrameworkFactory().NewFramework(configuration);
    framework->Start();
    context = framework->GetBundleContext();
    services = context.InstallBundles(copyOf("three_services", directory)).at(0);
    scripted = context.InstallBundles(copyOf("alpha", directory)).at(0);
}

World::~World()
{
    serviceTracker.reset();
    bundleTracker.reset();
    tool.reset();
    interfaces.reset();
    if (framework) {
        framework->Stop();
        framework->WaitForStop(std::chrono::milliseconds::zero());
    }
}

void World::listen()
{
    m_events.fill(0);
    // Counted by the numbers of their types, as telling more would need memory.
    auto const place = [](unsigned type) {
        std::size_t bit = 0;
        while ((type >>= 1U) != 0) {
            ++bit;
        }
        return bit;
    };
    m_own.push_back(
        context.AddBundleListener([this, place](BundleEvent const& event) { ++m_events.at(place(event.GetType())); }));
    m_own.push_back(context.AddServiceListener(
        [this, place](ServiceEvent const& event) { ++m_events.at(12 + place(event.GetType())); }));
}

std::string World::events() const
{
    std::ostringstream text;
    for (int const count : m_events) {
        text << count << ' ';
    }
    return text.str();
}

std::string World::state() const
{
    std::ostringstream text;
    if (framework) {
        text << "framework " << framework->GetState() << '\n';
    }
    for (auto const& bundle : {services, scripted}) {
        if (!bundle) {
            continue;
        }
        text << bundle.GetSymbolicName() << ' ' << bundle.GetState() << '\n';
        if (bundle.GetState() != Bundle::STATE_UNINSTALLED) {
            tellServices(text, bundle.GetRegisteredServices());
            text << "    uses " << bundle.GetServicesInUse().size() << '\n';
        }
    }
    if (context) {
        for (auto const& bundle : context.GetBundles()) {
            text << "installed " << bundle.GetSymbolicName() << '\n';
        }
        tellServices(text, BundleContext(context).GetServiceReferences(std::string()));
        text << "framework uses " << context.GetBundle().GetServicesInUse().size() << '\n';
    }
    if (serviceTracker) {
        text << "tracks services " << serviceTracker->GetTrackingCount() << ' ' << serviceTracker->Size() << '\n';
    }
    if (bundleTracker) {
        text << "tracks bundles " << bundleTracker->Size() << '\n';
    }
    text << "tool " << (tool != nullptr) << " interfaces " << (interfaces != nullptr) << " lent " << lent
         << " listeners " << tokens.size() << '\n';
    return text.str();
}

InterfaceMapConstPtr Lender::GetService(Bundle const& /*user*/, ServiceRegistrationBase const& /*self*/)
{
    UncountedMemory const ofFactory; // what a factory throws is an event, and no object
    InterfaceMapConstPtr object = MakeInterfaceMap<Tool>(std::make_shared<RealTool>());
    ++m_world.lent;
    return object;
}

void Lender::UngetService(Bundle const& /*user*/, ServiceRegistrationBase const& /*self*/,
                          InterfaceMapConstPtr const& /*object*/)
{
    --m_world.lent;
}

void expectSound(Expectation const& expectation)
{
    std::vector<std::string> allowed;
    std::string success;
    std::string successEvents;
    {
        World world;
        expectation.prepare(world);
        allowed.push_back(world.state());
        if (expectation.listens) {
            world.listen();
        }
        expectation.operate(world);
        success = world.state();
        successEvents = world.events();
        allowed.push_back(success);
    }
    for (auto const& lead : expectation.alsoAllowed) {
        World world;
        expectation.prepare(world);
        lead(world);
        allowed.push_back(world.state());
    }
    for (std::size_t number = 1;; ++number) {
        SCOPED_TRACE("allocation " + std::to_string(number));
        World world;
        expectation.prepare(world);
        auto const before = world.state();
        if (expectation.listens) {
            world.listen();
        }
        std::string thrown;
        bool hasFailed = false;
        {
            FailingMemory const failing(number, FailingMemory::Fails::once,
                                        expectation.threads ? FailingMemory::Of::allThreads
                                                            : FailingMemory::Of::thisThread);
            try {
                expectation.operate(world);
            } catch (std::exception const& e) {
                UncountedMemory const ofTest;
                thrown = e.what();
            }
            hasFailed = FailingMemory::hasFailed();
        }
        if (thrown.empty()) {
            ASSERT_EQ(world.state(), success);
            ASSERT_EQ(world.events(), successEvents);
        } else {
            auto const state = world.state();
            ASSERT_TRUE(std::find(allowed.begin(), allowed.end(), state) != allowed.end())
                << "after \"" << thrown << "\":\n"
                << state << "before:\n"
                << before << "success:\n"
                << success;
            ASSERT_NO_THROW(expectation.operate(world)) << "after \"" << thrown << '"';
            ASSERT_EQ(world.state(), success) << "once more, after \"" << thrown << '"';
        }
        if (!hasFailed) {
            ASSERT_GT(number, 0U);
            return;
        }
    }
}

} // namespace ostrel::test
