// How contexts compare: valid ones by the run of a bundle that they stand for, invalid ones not at all.
#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using namespace cppmicroservices;
using ostrel::test::installByManifest;
using ostrel::test::stopAndWait;

class ComparedContexts : public ostrel::test::StartedFramework {};

void expectEqual(BundleContext const& a, BundleContext const& b)
{
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
    EXPECT_FALSE(a < b);
    EXPECT_FALSE(b < a);
}

void expectOrder(BundleContext const& less, BundleContext const& greater)
{
    EXPECT_FALSE(less == greater);
    EXPECT_TRUE(less != greater);
    EXPECT_TRUE(less < greater);
    EXPECT_FALSE(greater < less);
}

TEST_F(ComparedContexts, areEqualForOneRunOfABundle)
{
    expectEqual(context, context);
    expectEqual(context, framework.GetBundleContext());
    auto bundle = installByManifest(context, {"b"}).at(0);
    bundle.Start();
    EXPECT_NE(context, bundle.GetBundleContext());
    EXPECT_NE(context < bundle.GetBundleContext(), bundle.GetBundleContext() < context);
}

TEST_F(ComparedContexts, areAllEqualWhenInvalid)
{
    auto bundle = installByManifest(context, {"b"}).at(0);
    expectEqual(bundle.GetBundleContext(), BundleContext()); // not started yet
    bundle.Start();
    auto const first = bundle.GetBundleContext();
    bundle.Stop();
    bundle.Start();
    auto const second = bundle.GetBundleContext();
    expectOrder(second, first);
    bundle.Stop();
    expectEqual(first, second);
    stopAndWait(framework);
    expectEqual(context, second);
    expectEqual(context, BundleContext());
    framework.Start();
    expectOrder(framework.GetBundleContext(), context);
}

TEST_F(ComparedContexts, comeBeforeInvalidOnes)
{
    BundleContext none;
    expectOrder(context, none);
    EXPECT_EQ(context, *std::set<BundleContext>({none, context}).begin());
    none = context;
    expectEqual(context, none);
    none = nullptr;
    expectOrder(context, none);
}

} // namespace
