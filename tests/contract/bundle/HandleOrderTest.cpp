#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <unordered_set>
#include <vector>

namespace {

using namespace cppmicroservices;
using ostrel::test::installByManifest;
using ostrel::test::stopAndWait;

/// Bundles of two frameworks, the first of which was made before.
class HandleOrder : public ostrel::test::StartedFramework {
protected:
    HandleOrder() { second.Start(); }
    ~HandleOrder() override { stopAndWait(second); }

    std::vector<Bundle> mine = installByManifest(context, {"a", "b"});
    Framework second = FrameworkFactory().NewFramework();
};

TEST_F(HandleOrder, ofBundlesIsThatOfTheirFrameworksAndIds)
{
    auto const others = installByManifest(second.GetBundleContext(), {"a", "b"});
    EXPECT_EQ(mine[0].GetBundleId(), others[0].GetBundleId());
    EXPECT_NE(mine[0], others[0]);
    std::vector<Bundle> const order{framework, mine[0], mine[1], second, others[0], others[1]};
    for (std::size_t i = 0; i < order.size(); ++i) {
        for (std::size_t j = 0; j < order.size(); ++j) {
            EXPECT_EQ(i < j, order[i] < order[j]) << i << ' ' << j;
            EXPECT_EQ(i == j, order[i] == order[j]) << i << ' ' << j;
        }
    }
    EXPECT_EQ(6U, std::set<Bundle>(order.begin(), order.end()).size());
    EXPECT_EQ(6U, std::unordered_set<Bundle>(order.begin(), order.end()).size());
}

TEST_F(HandleOrder, ofNoBundleIsBehindAll)
{
    EXPECT_TRUE(mine[0] < Bundle());
    EXPECT_FALSE(Bundle() < mine[0]);
    EXPECT_FALSE(Bundle() < Bundle());
    std::map<Bundle, int> numbers{{Bundle(), 1}, {mine[0], 2}, {mine[0], 3}, {Bundle(), 4}};
    EXPECT_EQ(2U, numbers.size());
    EXPECT_EQ(2, numbers.begin()->second);
}

} // namespace
