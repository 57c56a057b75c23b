// Listeners that are added, and services that are got, while their bundle is being stopped.
#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"
#include "contract/service/TestServices.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/BundleEvent.h>
#include <cppmicroservices/ServiceEvent.h>
#include <cppmicroservices/ServiceFactory.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

using namespace cppmicroservices;
using contract::Plain;
using ostrel::test::installByManifest;
using ostrel::test::stopAndWait;
using ostrel::test::thrownText;
using EndingContext = ostrel::test::StartedFramework;

/// Runs a task when it is destroyed.
class Farewell {
public:
    explicit Farewell(std::function<void()> task) : m_task(std::move(task)) {}
    Farewell(Farewell const&) = delete;
    Farewell& operator=(Farewell const&) = delete;
    ~Farewell() { m_task(); }

private:
    std::function<void()> m_task;
};

// The last listeners go when no more are taken, but while the context is valid still: a listener that was taken now
// would stay for good.
TEST_F(EndingContext, takesNoListenerFromTheDestructorOfItsLast)
{
    auto bundle = installByManifest(context, {"plain"}).at(0);
    bundle.Start();
    auto own = bundle.GetBundleContext();
    auto const service = own.RegisterService<Plain>(std::make_shared<contract::Both>());
    bool wasValid = false;
    std::string refusal = "none";
    context.AddServiceListener([&](ServiceEvent const&) {
        auto const farewell = std::make_shared<Farewell>([&] {
            wasValid = static_cast<bool>(own);
            refusal = thrownText<std::runtime_error>([&] { own.AddBundleListener([](BundleEvent const&) {}); });
        });
        own.AddBundleListener([farewell](BundleEvent const&) {});
    });

    bundle.Stop();

    EXPECT_TRUE(wasValid);
    EXPECT_EQ("The bundle context is no longer valid", refusal);
    stopAndWait(framework);
}

/// Calls a function when an object comes back.
class Lender final : public ServiceFactory {
public:
    std::function<void()> onReturn;

    InterfaceMapConstPtr GetService(Bundle const&, ServiceRegistrationBase const&) override
    {
        return MakeInterfaceMap<Plain>(std::make_shared<contract::Both>());
    }
    void UngetService(Bundle const&, ServiceRegistrationBase const&, InterfaceMapConstPtr const&) override
    {
        onReturn();
    }
};

// What the bundle used goes back when it may use nothing more, but while the context is valid still: a use that began
// now would never end.
TEST_F(EndingContext, usesNothingMoreOnceItsUsesEnd)
{
    auto bundle = installByManifest(context, {"plain"}).at(0);
    bundle.Start();
    auto own = bundle.GetBundleContext();
    auto const lender = std::make_shared<Lender>();
    auto const registration = context.RegisterService<Plain>(std::static_pointer_cast<ServiceFactory>(lender));
    ServiceReference<Plain> const reference = registration.GetReference();
    bool wasValid = false;
    std::string refusal = "none";
    lender->onReturn = [&] {
        wasValid = static_cast<bool>(own);
        refusal = thrownText<std::runtime_error>([&] { own.GetService(reference); });
    };
    auto const held = own.GetService(reference);

    bundle.Stop();

    EXPECT_TRUE(wasValid);
    EXPECT_EQ("The bundle context is no longer valid", refusal);
    EXPECT_TRUE(reference.GetUsingBundles().empty());
    lender->onReturn = [] {};
    stopAndWait(framework);
}

} // namespace
