// What the framework says of faults: of listeners, of service factories and of bundles.
#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/event/Seen.h"
#include "contract/service/TestServices.h"

#include <cppmicroservices/SecurityException.h>
#include <cppmicroservices/ServiceException.h>
#include <cppmicroservices/ServiceFactory.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Named;
using contract::Plain;
using contract::textOf;
using ostrel::test::installByManifest;
using ostrel::test::stopAndWait;

const std::shared_ptr<Both> object = std::make_shared<Both>();

/// "type message of bundle, threw what".
std::string summary(FrameworkEvent const& event)
{
    std::string text =
        textOf(event.GetType()) + " '" + event.GetMessage() + "' of " + event.GetBundle().GetSymbolicName();
    if (!event.GetThrowable()) {
        return text;
    }
    try {
        std::rethrow_exception(event.GetThrowable());
    } catch (ServiceException const& e) {
        return text + ", service exception " + std::to_string(e.GetType()) + " '" + e.what() + "'";
    } catch (std::logic_error const& e) {
        return text + ", logic error '" + e.what() + "'";
    } catch (std::exception const& e) {
        return text + ", exception '" + e.what() + "'";
    } catch (int number) {
        return text + ", number " + std::to_string(number);
    }
}

class FrameworkListeners : public ostrel::test::StartedFramework {
protected:
    FrameworkListeners()
    {
        context.AddFrameworkListener([this](FrameworkEvent const& event) { seen.push_back(summary(event)); });
    }

    using Texts = std::vector<std::string>;
    Texts seen;
};

TEST_F(FrameworkListeners, hearOfAServiceListenerThatThrows)
{
    auto bundle = installByManifest(context, {"plain"}).at(0);
    bundle.Start();
    auto own = bundle.GetBundleContext();
    auto token = own.AddServiceListener([](ServiceEvent const&) { throw std::logic_error("boom"); });
    auto const first = context.RegisterService<Plain>(object);
    EXPECT_TRUE(first);
    own.RemoveListener(std::move(token));
    context.AddServiceListener([](ServiceEvent const&) { throw 42; });
    auto const second = context.RegisterService<Plain>(object);
    EXPECT_TRUE(second);
    EXPECT_EQ((Texts{"ERROR 'Service listener in plain threw an exception!' of plain, logic error 'boom'",
                     "ERROR 'Service listener in system_bundle threw an exception!' of system_bundle, number 42"}),
              seen);
    stopAndWait(framework);
}

TEST_F(FrameworkListeners, hearOfABundleListenerThatThrows)
{
    auto bundles = installByManifest(context, {"one", "two"});
    bundles[0].Start();
    bundles[0].GetBundleContext().AddBundleListener([](BundleEvent const& event) {
        if (event.GetType() == BundleEvent::BUNDLE_STARTED) {
            throw std::runtime_error("boom");
        }
    });
    bundles[1].Start();
    EXPECT_EQ(Bundle::STATE_ACTIVE, bundles[1].GetState());
    EXPECT_EQ((Texts{"ERROR 'Bundle listener threw an exception' of one, exception 'boom'"}), seen);
    stopAndWait(framework);
}

TEST_F(FrameworkListeners, hearOfAnEmptyListener)
{
    context.AddServiceListener(ServiceListener());
    context.AddBundleListener(BundleListener());
    context.AddFrameworkListener(FrameworkListener());
    auto const registration = context.RegisterService<Plain>(object);
    installByManifest(context, {"plain"});
    EXPECT_EQ((Texts{"ERROR 'Service listener in system_bundle threw an exception!' of system_bundle, "
                     "exception 'bad_function_call'",
                     "ERROR 'Bundle listener threw an exception' of system_bundle, exception 'bad_function_call'"}),
              seen);
    stopAndWait(framework);
}

TEST_F(FrameworkListeners, mayThrowWithoutDisturbingOthers)
{
    int calls = 0;
    for (int i = 0; i < 3; ++i) {
        context.AddFrameworkListener([&calls](FrameworkEvent const&) {
            ++calls;
            throw std::runtime_error("own fault");
        });
    }
    context.AddFrameworkListener([](FrameworkEvent const&) { throw 7; });
    context.AddFrameworkListener(FrameworkListener());
    context.AddServiceListener([](ServiceEvent const&) { throw std::logic_error("boom"); });
    auto const registration = context.RegisterService<Plain>(object);
    EXPECT_TRUE(registration);
    EXPECT_EQ(3, calls);
    EXPECT_EQ(
        (Texts{"ERROR 'Service listener in system_bundle threw an exception!' of system_bundle, logic error 'boom'"}),
        seen);
    stopAndWait(framework);
}

class Scripted final : public ServiceFactory {
public:
    using Make = std::function<InterfaceMapConstPtr()>;
    explicit Scripted(
        Make make, std::function<void()> take = [] {})
        : m_make(std::move(make)), m_take(std::move(take))
    {
    }

    InterfaceMapConstPtr GetService(Bundle const&, ServiceRegistrationBase const&) override { return m_make(); }
    void UngetService(Bundle const&, ServiceRegistrationBase const&, InterfaceMapConstPtr const&) override { m_take(); }

private:
    Make m_make;
    std::function<void()> m_take;
};

TEST_F(FrameworkListeners, hearOfAFailingFactory)
{
    auto bundles = installByManifest(context, {"maker", "user"});
    bundles[0].Start();
    bundles[1].Start();
    auto maker = bundles[0].GetBundleContext();
    auto user = bundles[1].GetBundleContext();
    auto const get = [&](std::shared_ptr<Scripted> const& factory) {
        auto registration = maker.RegisterService<Plain>(ToFactory(factory));
        user.GetService(registration.GetReference());
        registration.Unregister();
    };
    get(std::make_shared<Scripted>([] { return nullptr; }));
    get(std::make_shared<Scripted>([] { return std::make_shared<InterfaceMap>(); }));
    get(std::make_shared<Scripted>([]() -> InterfaceMapConstPtr { throw std::runtime_error("no luck"); }));
    get(std::make_shared<Scripted>([] { return MakeInterfaceMap<Named>(object); }));
    get(std::make_shared<Scripted>([] { return MakeInterfaceMap<Plain>(object); },
                                   [] { throw std::runtime_error("keep it"); }));
    EXPECT_EQ((Texts{"ERROR 'ServiceFactory returned an empty or nullptr interface map.' of user, service exception "
                     "2 'ServiceFactory returned an empty or nullptr interface map.'",
                     "ERROR 'ServiceFactory returned an empty or nullptr interface map.' of user, service exception "
                     "2 'ServiceFactory returned an empty or nullptr interface map.'",
                     "ERROR 'ServiceFactory threw an unknown exception.' of user, service exception 3 'no luck'",
                     "WARNING 'ServiceFactory produced an object that did not implement: contract::Plain' of user, "
                     "logic error 'ServiceFactory produced an object that did not implement: contract::Plain'",
                     "ERROR 'ServiceFactory threw an exception' of user, service exception 3 'keep it'"}),
              seen);
    stopAndWait(framework);
}

TEST_F(FrameworkListeners, hearOfAFactoryThatAsksForItself)
{
    ServiceReference<Plain> reference;
    auto const factory = std::make_shared<Scripted>([&] {
        EXPECT_FALSE(context.GetService(reference));
        return MakeInterfaceMap<Plain>(object);
    });
    reference = context.RegisterService<Plain>(ToFactory(factory)).GetReference();
    EXPECT_TRUE(context.GetService(reference));
    EXPECT_EQ((Texts{"ERROR 'Recursive call to ServiceFactory::GetService' of system_bundle, service exception 6 "
                     "'Recursive call to ServiceFactory::GetService'"}),
              seen);
    stopAndWait(framework);
}

TEST_F(FrameworkListeners, goWhenTheirBundleStops)
{
    auto bundle = installByManifest(context, {"plain"}).at(0);
    bundle.Start();
    Texts mine;
    bundle.GetBundleContext().AddFrameworkListener(
        [&mine](FrameworkEvent const& event) { mine.push_back(summary(event)); });
    context.AddBundleListener([](BundleEvent const& event) { throw static_cast<int>(event.GetType()); });
    bundle.Stop();
    EXPECT_EQ((Texts{"ERROR 'Bundle listener threw an exception' of system_bundle, number 256"}), mine);
    EXPECT_EQ((Texts{"ERROR 'Bundle listener threw an exception' of system_bundle, number 256",
                     "ERROR 'Bundle listener threw an exception' of system_bundle, number 4"}),
              seen);
    stopAndWait(framework);
}

TEST(FrameworkListenersOfARun, hearOfTheStartAndNotOfTheStop)
{
    auto framework = FrameworkFactory().NewFramework();
    framework.Init();
    std::vector<std::string> seen;
    framework.GetBundleContext().AddFrameworkListener(
        [&seen](FrameworkEvent const& event) { seen.push_back(summary(event)); });
    framework.Start();
    framework.Start();
    EXPECT_EQ((std::vector<std::string>{"STARTED '' of system_bundle"}), seen);
    seen.clear();
    stopAndWait(framework);
    framework.Start();
    stopAndWait(framework);
    EXPECT_TRUE(seen.empty());
}

TEST(FrameworkListenersOfARun, hearOfAFailingValidation)
{
    using Validation = std::function<bool(Bundle const&)>;
    bool throws = true;
    FrameworkConfiguration configuration;
    configuration["org.cppmicroservices.framework.bundle.validation.function"] =
        Validation([&throws](Bundle const&) -> bool {
            if (throws) {
                throw std::runtime_error("cannot say");
            }
            return false;
        });
    auto framework = FrameworkFactory().NewFramework(configuration);
    framework.Start();
    auto context = framework.GetBundleContext();
    std::vector<std::string> seen;
    context.AddFrameworkListener([&seen](FrameworkEvent const& event) { seen.push_back(summary(event)); });
    auto bundle = installByManifest(context, {"doubtful"}, {{Constants::BUNDLE_ACTIVATOR, true}}).at(0);
    EXPECT_THROW(bundle.Start(), SecurityException);
    EXPECT_EQ((std::vector<std::string>{"WARNING 'The bundle validation function threw an exception' of doubtful, "
                                        "exception 'cannot say'"}),
              seen);
    throws = false;
    EXPECT_THROW(bundle.Start(), SecurityException);
    EXPECT_EQ(1U, seen.size());
    stopAndWait(framework);
}

} // namespace
