#include "container/UsingClosure.h"

#include "integration/support/BundleArchive.h"
#include "integration/support/Services.h"
#include "support/Host.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace ostrel::test {
namespace {

using cppmicroservices::Bundle;
using cppmicroservices::InterfaceMapConstPtr;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using us_container::servicesReachedFrom;

class ServicesReachedFrom : public HostFixture {
protected:
    /// Starts a bundle without code. Bundles compare by their ids, which ascend from call to call.
    Bundle started(const std::string& name)
    {
        const std::string location = host.locationOf(addArchive(host, name + ".zip", {bundleWith(name)}));
        Bundle bundle = host.context().InstallBundles(location).at(0);
        bundle.Start();
        return bundle;
    }

    /// Registers a service, which these bundles use.
    long provide(const Bundle& bundle, const std::vector<Bundle>& users = {})
    {
        const auto service = registerGreeter(bundle.GetBundleContext());
        for (const Bundle& user : users) {
            m_used.push_back(user.GetBundleContext().GetService(service));
        }
        return idOf(service);
    }

    static std::vector<long> reachedFrom(const Bundle& bundle)
    {
        std::vector<long> ids;
        for (const auto& reference : servicesReachedFrom(bundle)) {
            ids.push_back(idOf(reference));
        }
        return ids;
    }

private:
    std::vector<InterfaceMapConstPtr> m_used;
};

TEST_F(ServicesReachedFrom, GivenBundleWithoutServices_WhenCollected_ThenThereAreNone)
{
    provide(started("other"));

    EXPECT_THAT(reachedFrom(started("alone")), IsEmpty());
}

TEST_F(ServicesReachedFrom, GivenServicesNotUsed_WhenCollected_ThenTheyStandInOrderOfRegistration)
{
    const Bundle a = started("a");
    const long first = provide(a);
    provide(started("b"));
    const long second = provide(a);

    EXPECT_THAT(reachedFrom(a), ElementsAre(first, second));
}

TEST_F(ServicesReachedFrom, GivenUsersOfUsers_WhenCollected_ThenTheirServicesFollow)
{
    const Bundle a = started("a");
    const Bundle b = started("b");
    const Bundle c = started("c");
    const long ofC = provide(c);
    const long ofB = provide(b, {c});
    const long ofA = provide(a, {b});

    EXPECT_THAT(reachedFrom(a), ElementsAre(ofA, ofB, ofC));
    EXPECT_THAT(reachedFrom(b), ElementsAre(ofB, ofC));
    EXPECT_THAT(reachedFrom(c), ElementsAre(ofC));
}

TEST_F(ServicesReachedFrom, GivenAllServicesOfABundle_WhenOnlyTheLastHasUsers_ThenTheyAreReachedToo)
{
    const Bundle a = started("a");
    const Bundle b = started("b");
    const long unused = provide(a);
    const long used = provide(a, {b});
    const long ofB = provide(b);

    EXPECT_THAT(reachedFrom(a), ElementsAre(unused, used, ofB));
}

TEST_F(ServicesReachedFrom, GivenUserOfManyServices_WhenCollected_ThenItIsVisitedOnce)
{
    const Bundle a = started("a");
    const Bundle b = started("b");
    const long first = provide(a, {b});
    const long second = provide(a, {b});
    const long ofB = provide(b);

    EXPECT_THAT(reachedFrom(a), ElementsAre(first, second, ofB));
}

TEST_F(ServicesReachedFrom, GivenBundleThatUsesItself_WhenCollected_ThenItIsVisitedOnce)
{
    const Bundle a = started("a");
    const long own = provide(a, {a});

    EXPECT_THAT(reachedFrom(a), ElementsAre(own));
}

TEST_F(ServicesReachedFrom, GivenCircle_WhenCollected_ThenEachIsVisitedOnce)
{
    const Bundle a = started("a");
    const Bundle b = started("b");
    const Bundle c = started("c");
    const long ofA = provide(a, {b});
    const long ofB = provide(b, {c});
    const long ofC = provide(c, {a});

    EXPECT_THAT(reachedFrom(b), ElementsAre(ofB, ofC, ofA));
}

TEST_F(ServicesReachedFrom, GivenManyPending_WhenCollected_ThenTheLeastBundleIsNextWheneverItCame)
{
    const Bundle a = started("a");
    const Bundle b = started("b");
    const Bundle c = started("c");
    const Bundle d = started("d");
    const long ofA = provide(a);
    const long ofB = provide(b, {a});
    const long ofC = provide(c, {d, b});
    const long ofD = provide(d);

    EXPECT_THAT(reachedFrom(c), ElementsAre(ofC, ofB, ofA, ofD));
}

TEST_F(ServicesReachedFrom, GivenUninstalledBundle_WhenCollected_ThenTheFrameworksExceptionComesThrough)
{
    Bundle a = started("a");
    a.Uninstall();

    EXPECT_THROW(servicesReachedFrom(a), std::logic_error);
}

} // namespace
} // namespace ostrel::test
