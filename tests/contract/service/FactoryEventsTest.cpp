#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/service/CountingFactory.h"
#include "contract/service/TestServices.h"

#include <cppmicroservices/PrototypeServiceFactory.h>
#include <cppmicroservices/ServiceObjects.h>

#include <gmock/gmock.h>

#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::CountingFactory;
using contract::Named;
using contract::Plain;
using ::testing::ElementsAre;

InterfaceMapConstPtr makeBoth()
{
    return MakeInterfaceMap<Plain, Named>(std::make_shared<Both>());
}

/// "type: text of the exception and, of a ServiceException, its type".
std::string describe(std::exception_ptr const& exception)
{
    try {
        std::rethrow_exception(exception);
    } catch (ServiceException const& e) {
        return "ServiceException " + std::to_string(e.GetType()) + ": " + e.what();
    } catch (std::logic_error const& e) {
        return std::string("logic_error: ") + e.what();
    } catch (...) {
        return "something else";
    }
}

/// One bundle uses the services of a factory that another registered; the events that the failures cause.
template <class Base>
class FactoryEvents : public ostrel::test::StartedFramework {
protected:
    FactoryEvents() : user(ostrel::test::installByManifest(context, {"user"}).at(0))
    {
        user.Start();
        context.AddFrameworkListener([this](FrameworkEvent const& event) {
            std::ostringstream text;
            text << event.GetType() << " from " << event.GetBundle().GetSymbolicName() << ": " << event.GetMessage();
            events.push_back(text.str());
            exceptions.push_back(describe(event.GetThrowable()));
        });
    }

    std::shared_ptr<Plain> get()
    {
        return user.GetBundleContext().GetService(registration.template GetReference<Plain>());
    }

    Bundle user;
    std::shared_ptr<CountingFactory<Base>> factory = std::make_shared<CountingFactory<Base>>(makeBoth);
    ServiceRegistration<Plain, Named> registration = context.RegisterService<Plain, Named>(ToFactory(factory));
    std::vector<std::string> events;
    std::vector<std::string> exceptions;
};

using Factories = ::testing::Types<ServiceFactory, PrototypeServiceFactory>;
TYPED_TEST_SUITE(FactoryEvents, Factories, );

TYPED_TEST(FactoryEvents, tellThatNothingWasMade)
{
    this->factory->make = [] { return InterfaceMapConstPtr(); };
    EXPECT_FALSE(this->get());
    auto const text = std::string("ServiceFactory returned an empty or nullptr interface map.");
    EXPECT_THAT(this->events, ElementsAre("ERROR from user: " + text));
    EXPECT_THAT(this->exceptions, ElementsAre("ServiceException 2: " + text));
}

TYPED_TEST(FactoryEvents, tellWhichInterfaceIsMissing)
{
    this->factory->make = []() -> InterfaceMapConstPtr { return MakeInterfaceMap<Plain>(std::make_shared<Both>()); };
    EXPECT_FALSE(this->get());
    auto const text = std::string("ServiceFactory produced an object that did not implement: my.named");
    EXPECT_THAT(this->events, ElementsAre("WARNING from user: " + text));
    EXPECT_THAT(this->exceptions, ElementsAre("logic_error: " + text));
}

TYPED_TEST(FactoryEvents, carryWhatWasThrown)
{
    this->factory->make = []() -> InterfaceMapConstPtr { throw std::runtime_error("making"); };
    EXPECT_FALSE(this->get());
    EXPECT_THAT(this->events, ElementsAre("ERROR from user: ServiceFactory threw an unknown exception."));
    EXPECT_THAT(this->exceptions, ElementsAre("ServiceException 3: making"));
}

TYPED_TEST(FactoryEvents, tellOfARecursion)
{
    this->factory->make = [this] {
        this->get();
        return makeBoth();
    };
    EXPECT_TRUE(this->get());
    auto const text = std::string("Recursive call to ServiceFactory::GetService");
    EXPECT_THAT(this->events, ElementsAre("ERROR from user: " + text));
    EXPECT_THAT(this->exceptions, ElementsAre("ServiceException 6: " + text));
}

TYPED_TEST(FactoryEvents, tellThatAnObjectWasNotTakenBack)
{
    this->factory->failsToTake = true;
    this->get().reset();
    EXPECT_THAT(this->events, ElementsAre("ERROR from user: ServiceFactory threw an exception"));
    EXPECT_THAT(this->exceptions, ElementsAre("ServiceException 3: taking"));
}

TYPED_TEST(FactoryEvents, tellThatAnObjectWasNotTakenBackAtTheStopOfItsUser)
{
    this->factory->failsToTake = true;
    auto const service = this->get();
    this->user.Stop();
    EXPECT_THAT(this->events, ElementsAre("ERROR from user: ServiceFactory threw an exception"));
}

TYPED_TEST(FactoryEvents, nameTheOwnerWhenItUnregisters)
{
    this->factory->failsToTake = true;
    auto const service = this->get();
    this->registration.Unregister();
    EXPECT_THAT(this->events, ElementsAre("ERROR from system_bundle: ServiceFactory UngetService implementation threw "
                                          "an exception"));
    EXPECT_THAT(this->exceptions, ElementsAre("ServiceException 3: taking"));
}

using PrototypeEvents = FactoryEvents<PrototypeServiceFactory>;

TEST_F(PrototypeEvents, areTheSameForServiceObjects)
{
    auto const objects = user.GetBundleContext().GetServiceObjects(registration.GetReference<Plain>());
    factory->failsToTake = true;
    objects.GetService().reset();
    EXPECT_THAT(events, ElementsAre("ERROR from user: ServiceFactory threw an exception"));
    auto const service = objects.GetService();
    registration.Unregister();
    EXPECT_EQ(2U, events.size());
    EXPECT_EQ("ERROR from system_bundle: ServiceFactory UngetService implementation threw an exception", events.back());
}

} // namespace
