// Memory that fails while a bundle's library is loaded.
#include "support/FailingMemory.h"
#include "support/TestBundles.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <exception>

namespace {

using namespace cppmicroservices;
using ostrel::test::FailingMemory;

/// Whether the n-th allocation of the bundle's start failed; the bundle is started once more if it did not start.
bool startTwice(Bundle& bundle, std::size_t n)
{
    bool struck = false;
    try {
        FailingMemory const failing(n);
        bundle.Start();
        struck = FailingMemory::hasFailed();
    } catch (std::exception const&) {
        struck = true;
        bundle.Start();
    }
    return struck;
}

TEST(Load, thatFailedOnceIsDoneAgain)
{
    for (std::size_t n = 1;; ++n) {
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
