#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/service/TestServices.h"

#include <cppmicroservices/BundleEvent.h>
#include <cppmicroservices/ServiceEvent.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Plain;
using ostrel::test::installByManifest;
using ostrel::test::stopAndWait;

/// For three listeners: that many tell more kinds of orders apart than two, and are still few enough for each framework
/// to have a fixed order.
class OrderOfListeners : public ostrel::test::StartedFramework {
protected:
    ~OrderOfListeners() override { stopAndWait(framework); }

    std::string seen;
};

TEST_F(OrderOfListeners, isFromTheLastAddedToTheFirstForServices)
{
    for (char const name : {'a', 'b', 'c'}) {
        context.AddServiceListener([this, name](ServiceEvent const&) { seen += name; });
    }
    auto registration = context.RegisterService<Plain>(std::make_shared<Both>());
    registration.Unregister();
    EXPECT_EQ("cbacba", seen);
}

TEST_F(OrderOfListeners, isFromTheLastAddedToTheFirstForBundles)
{
    for (char const name : {'a', 'b', 'c'}) {
        context.AddBundleListener([this, name](BundleEvent const&) { seen += name; });
    }
    installByManifest(context, {"one", "two"});
    EXPECT_EQ("cbacba", seen);
}

TEST_F(OrderOfListeners, isFromTheLastAddedToTheFirstForTheFramework)
{
    for (char const name : {'a', 'b', 'c'}) {
        context.AddFrameworkListener([this, name](FrameworkEvent const&) { seen += name; });
    }
    context.AddServiceListener([](ServiceEvent const&) { throw 1; });
    auto const registration = context.RegisterService<Plain>(std::make_shared<Both>());
    EXPECT_EQ("cba", seen);
}

} // namespace
