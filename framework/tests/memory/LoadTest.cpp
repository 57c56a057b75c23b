// Memory that fails while a bundle's library is loaded.
#include "support/AllocationFault.h"
#include "support/TestBundles.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <gtest/gtest.h>

#include <exception>

namespace {

using namespace cppmicroservices;
using ostrel::test::AllocationFault;

/// Whether the n-th allocation of the bundle's start failed; the bundle is started once more if it did not start.
bool startTwice(Bundle& bundle, long n)
{
    bool struck = false;
    try {
        AllocationFault fault(n);
        bundle.Start();
        struck = fault.struck();
    } catch (std::exception const&) {
        struck = true;
        bundle.Start();
    }
    return struck;
}

TEST(Load, thatFailedOnceIsDoneAgain)
{
    for (long n = 1;; ++n) {
        auto framework = FrameworkFactory().NewFramework();
        framework.Start();
        auto const location = ostrel::test::testBundle("alpha").string();
        auto bundle = framework.GetBundleContext().InstallBundles(location).at(0);
        bool struck = false;
        ASSERT_NO_THROW(struck = startTwice(bundle, n)) << "allocation " << n;
        EXPECT_EQ(bundle.GetState(), Bundle::STATE_ACTIVE);
        if (!struck) {
            break;
        }
    }
}

} // namespace
