#include "contract/StartedFramework.h"
#include "support/TemporaryDirectory.h"
#include "support/TestBundles.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/SecurityException.h>

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;

class Validation : public ::testing::Test {
protected:
    Validation()
    {
        framework.Start();
        std::filesystem::copy_file(ostrel::test::testBundle("alpha"), location);
        bundle = framework.GetBundleContext().InstallBundles(location).at(0);
    }

    ~Validation() override { ostrel::test::stopAndWait(framework); }

    FrameworkConfiguration configuration()
    {
        std::function<bool(Bundle const&)> const function = [this](Bundle const& asked) {
            questions.push_back(asked);
            return verdict();
        };
        return {{"org.cppmicroservices.framework.bundle.validation.function", function}};
    }

    /// Expects that the start is refused with this text.
    void expectRefusal(std::string const& text)
    {
        try {
            bundle.Start();
            ADD_FAILURE() << "nothing was thrown";
        } catch (SecurityException const& e) {
            EXPECT_EQ(text, e.what());
            EXPECT_EQ(bundle, e.GetBundle());
        }
        EXPECT_EQ(Bundle::STATE_RESOLVED, bundle.GetState());
        EXPECT_FALSE(bundle.GetBundleContext());
        EXPECT_TRUE(bundle.GetRegisteredServices().empty());
        EXPECT_EQ(std::vector<Bundle>{bundle}, questions);
    }

    std::function<bool()> verdict;
    std::vector<Bundle> questions;
    ostrel::test::TemporaryDirectory directory;
    std::string const location = (directory.path() / "libalpha.so").string();
    Framework framework = FrameworkFactory().NewFramework(configuration());
    Bundle bundle;
};

TEST_F(Validation, refusesTheStartByFalse)
{
    verdict = [] { return false; };
    expectRefusal("Bundle alpha (location=" + location + ") failed bundle validation.");
}

TEST_F(Validation, refusesTheStartByWhatItThrows)
{
    verdict = []() -> bool { throw std::runtime_error("no signature"); };
    expectRefusal("no signature");
}

TEST_F(Validation, isAskedAgainAtTheNextStart)
{
    verdict = [] { return false; };
    EXPECT_THROW(bundle.Start(), SecurityException);
    verdict = [] { return true; };
    bundle.Start();
    EXPECT_EQ(Bundle::STATE_ACTIVE, bundle.GetState());
    EXPECT_EQ(2U, questions.size());
}

} // namespace
