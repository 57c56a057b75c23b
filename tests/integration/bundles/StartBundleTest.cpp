#include "container/MicroServicesContainer.h"
#include "support/BundleScript.h"
#include "support/Host.h"
#include "support/RecordCapture.h"
#include "support/Threads.h"

#include <gmock/gmock.h>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using us_container::MicroServicesContainer;

class StartBundle : public HostFixture {
protected:
    BundleScript script{host.context()};
    RecordCapture log;
};

TEST_F(StartBundle, GivenFileOfThatName_WhenStarted_ThenItsBundleIsActive)
{
    MicroServicesContainer container{host.context(), host.bundleDirectory()};

    container.startBundle(host.add("alpha"));

    EXPECT_EQ(host.bundleIn("libalpha.so").GetState(), cppmicroservices::Bundle::STATE_ACTIVE);
}

} // namespace
} // namespace ostrel::test
