#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"
#include "contract/service/TestServices.h"

#include <gmock/gmock.h>

#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Named;
using contract::Plain;
using ostrel::test::thrownText;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LookingUp : public ostrel::test::StartedFramework {
protected:
    ServiceRegistration<Plain> add(int number, int ranking)
    {
        ServiceProperties properties{{"n", number}};
        if (ranking != 0) {
            properties["service.ranking"] = ranking;
        }
        return context.RegisterService<Plain>(std::make_shared<Both>(), properties);
    }

    std::vector<int> numbers(std::string const& clazz, std::string const& filter = {})
    {
        std::vector<int> result;
        for (auto const& reference : context.GetServiceReferences(clazz, filter)) {
            result.push_back(any_cast<int>(reference.GetProperty("n")));
        }
        return result;
    }

    std::string const plain = us_service_interface_iid<Plain>();
};

TEST_F(LookingUp, ordersAClassByRankingThenById)
{
    add(1, 0);
    add(2, 5);
    add(3, -1);
    add(4, 5);
    EXPECT_THAT(numbers(plain), ElementsAre(2, 4, 1, 3));
    EXPECT_EQ(2, any_cast<int>(context.GetServiceReference<Plain>().GetProperty("n")));
}

TEST_F(LookingUp, ordersAllServicesByRegistration)
{
    add(1, 0);
    add(2, 5);
    EXPECT_THAT(numbers(""), ElementsAre(1, 2));
    EXPECT_THAT(numbers("", "(n=*)"), ElementsAre(1, 2));
    EXPECT_EQ(1, any_cast<int>(context.GetServiceReference("").GetProperty("n")));
}

TEST_F(LookingUp, ordersByClassWhereTheFilterDecidesOnOne)
{
    add(1, 0);
    add(2, 5);
    EXPECT_THAT(numbers("", "(objectclass=contract::Plain)"), ElementsAre(2, 1));
    EXPECT_THAT(numbers("", "(&(n=*)(OBJECTCLASS=contract::Plain))"), ElementsAre(2, 1));
}

TEST_F(LookingUp, followsAChangedRanking)
{
    add(1, 1);
    auto second = add(2, 0);
    second.SetProperties({{"n", 2}, {"service.ranking", 7}});
    EXPECT_THAT(numbers(plain), ElementsAre(2, 1));
    second.SetProperties({{"n", 2}});
    EXPECT_THAT(numbers(plain), ElementsAre(1, 2));
}

TEST_F(LookingUp, findsByIdInAnySpelling)
{
    add(1, 0);
    auto const wanted = add(2, 0);
    auto const id = std::to_string(any_cast<long>(wanted.GetReference().GetProperty("service.id")));
    EXPECT_THAT(numbers("", "(service.id=" + id + ")"), ElementsAre(2));
    EXPECT_THAT(numbers(plain, "( SERVICE.ID =0" + id + ")"), ElementsAre(2));
    EXPECT_THAT(numbers("other", "(service.id=" + id + ")"), IsEmpty());
    EXPECT_THAT(numbers("", "(&(service.id=" + id + ")(n=1))"), IsEmpty());
}

TEST_F(LookingUp, looksAtAFilterOnlyWhereThereIsTheClass)
{
    EXPECT_THAT(numbers("nobody", "(("), IsEmpty());
    EXPECT_EQ("Malformed query: ()", thrownText<std::invalid_argument>([this] { numbers("", "(()"); }));
    add(1, 0);
    EXPECT_THROW(numbers(plain, "(("), std::invalid_argument);
    EXPECT_THROW(numbers(plain, " "), std::invalid_argument);
}

TEST_F(LookingUp, givesAFalseReferenceForNothing)
{
    EXPECT_FALSE(context.GetServiceReference<Plain>());
    EXPECT_FALSE(context.GetServiceReference(""));
}

TEST_F(LookingUp, namesTheInterfaceThatWasAskedFor)
{
    auto const registration = context.RegisterService<Plain, Named>(std::make_shared<Both>());
    EXPECT_EQ("my.named", registration.GetReference<Named>().GetInterfaceId());
    EXPECT_EQ("my.named", context.GetServiceReference("my.named").GetInterfaceId());
    EXPECT_EQ("", context.GetServiceReferences("").front().GetInterfaceId());
    EXPECT_EQ("", context.GetServiceReferences("", "(objectclass=my.named)").front().GetInterfaceId());
    ServiceReferenceU const untyped = registration.GetReference();
    EXPECT_EQ(plain, untyped.GetInterfaceId());
    EXPECT_EQ("my.named", ServiceReference<Named>(untyped).GetInterfaceId());
    EXPECT_FALSE(ServiceReference<int>(untyped));
}

TEST_F(LookingUp, comparesReferencesByTheirService)
{
    auto const low = add(1, -1).GetReference();
    auto const early = add(2, 0).GetReference();
    auto const late = add(3, 0).GetReference();
    EXPECT_TRUE(low < late);
    EXPECT_TRUE(late < early);
    EXPECT_FALSE(early < early);
    ServiceReferenceU const none;
    EXPECT_TRUE(none < ServiceReferenceU(low));
    EXPECT_TRUE(none == ServiceReferenceU());
    EXPECT_EQ(0U, std::hash<ServiceReferenceU>()(none));
    std::set<ServiceReference<Plain>> const ordered{early, low, late};
    EXPECT_EQ(low, *ordered.begin());
    EXPECT_EQ(early, *ordered.rbegin());
}

TEST_F(LookingUp, leavesAMovedReferenceAsItWas)
{
    auto const registration = add(1, 0);
    auto from = registration.GetReference();
    auto to = std::move(from);
    EXPECT_TRUE(from); // NOLINT: what a moved-from reference is, is the point
    EXPECT_EQ(from, to);
}

TEST_F(LookingUp, writesAReference)
{
    auto registration = context.RegisterService<Plain>(std::make_shared<Both>());
    std::ostringstream text;
    text << registration.GetReference();
    EXPECT_EQ("Reference for service object registered from system_bundle 3.8.4 (service.scope=singleton,service.id=" +
                  registration.GetReference().GetProperty("service.id").ToString() + ",objectclass=[contract::Plain])",
              text.str());
    registration.Unregister();
    std::ostringstream stale;
    stale << ServiceReferenceU();
    EXPECT_EQ("Invalid service reference", stale.str());
}

TEST_F(LookingUp, needsAnInterfaceWithAName)
{
    auto const text = "The service interface class has no CPPMICROSERVICES_DECLARE_SERVICE_INTERFACE macro";
    EXPECT_EQ(text, thrownText<ServiceException>([this] { context.GetServiceReference<void>(); }));
    EXPECT_EQ(text, thrownText<ServiceException>([this] { context.GetServiceReferences<void>(); }));
}

} // namespace
