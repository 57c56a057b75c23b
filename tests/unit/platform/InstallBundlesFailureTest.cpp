#include "platform/InstallBundles.h"
#include "support/Host.h"
#include "unit/ZipText.h"
#include "unit/platform/ContextSeams.h"

#include <gmock/gmock.h>

#include <new>
#include <stdexcept>

using namespace ostrel::platform;
using namespace ostrel::test;
using testing::SizeIs;

namespace {

class InstallFailure : public HostFixture {
protected:
    std::vector<cppmicroservices::Bundle> install() { return installBundles(host.context(), host.bundleDirectory()); }

    ContextSeams seams;
};

TEST_F(InstallFailure, GivenFrameworkWithoutMemory_WhenInstalled_ThenBadAllocPasses)
{
    host.write("a", bundleZip("a"));
    seams.installBundles = [](const std::string&) -> ContextSeams::Bundles { throw std::bad_alloc{}; };

    EXPECT_THROW(install(), std::bad_alloc);

    seams.installBundles = nullptr;
    EXPECT_THAT(install(), SizeIs(1));
}

TEST_F(InstallFailure, GivenFrameworkThatRefuses_WhenInstalled_ThenTheTextNamesFileAndReason)
{
    host.write("a", bundleZip("a"));
    seams.installBundles = [](const std::string&) -> ContextSeams::Bundles {
        throw std::runtime_error{"planned refusal"};
    };

    try {
        install();
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(error.what(),
                  "installBundles: the framework refused '" + host.locationOf("a") + "': planned refusal");
    }
}

} // namespace
