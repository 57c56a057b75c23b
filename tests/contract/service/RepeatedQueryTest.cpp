// A framework may keep what a query found out; the next one must tell the truth nevertheless.
#include "contract/StartedFramework.h"
#include "contract/service/TestServices.h"

#include <cppmicroservices/BundleContext.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Named;
using contract::Plain;

std::shared_ptr<Both> const object = std::make_shared<Both>();

class RepeatedQuery : public ostrel::test::StartedFramework {
protected:
    /// How many services each way of asking finds: by class, by the other class, by neither, by a class in the filter.
    std::vector<std::size_t> counts(std::string const& filter)
    {
        return {context.GetServiceReferences<Plain>(filter).size(), context.GetServiceReferences<Named>(filter).size(),
                context.GetServiceReferences("", filter).size(),
                context.GetServiceReferences("", "(&(objectclass=my.named)" + filter + ")").size()};
    }
};

using Counts = std::vector<std::size_t>;

TEST_F(RepeatedQuery, seesServicesThatCameAndWent)
{
    std::string const filter = "(colour=red)";
    auto first = context.RegisterService<Plain, Named>(object, {{"colour", std::string("red")}});
    EXPECT_EQ((Counts{1, 1, 1, 1}), counts(filter));
    EXPECT_EQ((Counts{1, 1, 1, 1}), counts(filter));
    auto second = context.RegisterService<Plain>(object, {{"colour", std::string("red")}});
    EXPECT_EQ((Counts{2, 1, 2, 1}), counts(filter));
    first.Unregister();
    EXPECT_EQ((Counts{1, 0, 1, 0}), counts(filter));
    second.Unregister();
    EXPECT_EQ((Counts{0, 0, 0, 0}), counts(filter));
}

TEST_F(RepeatedQuery, seesChangedProperties)
{
    std::string const filter = "(colour=red)";
    auto registration = context.RegisterService<Plain, Named>(object, {{"colour", std::string("red")}});
    EXPECT_EQ((Counts{1, 1, 1, 1}), counts(filter));
    registration.SetProperties({{"colour", std::string("blue")}});
    EXPECT_EQ((Counts{0, 0, 0, 0}), counts(filter));
    registration.SetProperties({{"Colour", std::string("red")}});
    EXPECT_EQ((Counts{1, 1, 1, 1}), counts(filter));
}

TEST_F(RepeatedQuery, seesAChangedOrder)
{
    std::string const filter = "(colour=red)";
    auto first = context.RegisterService<Plain>(object, {{"colour", std::string("red")}});
    auto second = context.RegisterService<Plain>(object, {{"colour", std::string("red")}});
    EXPECT_EQ(first.GetReference(), context.GetServiceReferences<Plain>(filter).front());
    second.SetProperties({{"colour", std::string("red")}, {"service.ranking", 1}});
    EXPECT_EQ(second.GetReference(), context.GetServiceReferences<Plain>(filter).front());
    EXPECT_EQ(second.GetReference(), context.GetServiceReferences<Plain>().front());
    second.SetProperties({{"colour", std::string("red")}});
    EXPECT_EQ(first.GetReference(), context.GetServiceReferences<Plain>(filter).front());
}

TEST_F(RepeatedQuery, findsAnIdThatTwoServicesShow)
{
    auto regular = context.RegisterService<Plain, Named>(object);
    auto const id = any_cast<long>(regular.GetReference().GetProperty("service.id"));
    std::string const filter = "(service.id=" + std::to_string(id) + ")";
    EXPECT_EQ((Counts{1, 1, 1, 1}), counts(filter));
    auto likewise = context.RegisterService<Plain>(object, {{"service.id", id}});
    EXPECT_EQ((Counts{2, 1, 2, 1}), counts(filter));
    regular.Unregister();
    EXPECT_EQ((Counts{1, 0, 1, 0}), counts(filter));
    likewise.Unregister();
    EXPECT_EQ((Counts{0, 0, 0, 0}), counts(filter));
}

TEST_F(RepeatedQuery, doesNotKeepPropertiesAlive)
{
    auto const value = std::make_shared<int>(1);
    auto registration = context.RegisterService<Plain>(object, {{"colour", std::string("red")}, {"value", Any(value)}});
    EXPECT_EQ((Counts{1, 0, 1, 0}), counts("(colour=red)"));
    registration.SetProperties({{"colour", std::string("blue")}});
    EXPECT_EQ(1, value.use_count());
}

} // namespace
