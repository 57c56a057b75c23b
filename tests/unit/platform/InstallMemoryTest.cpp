// Installing while memory fails. All allocations of the program are counted, so this is a program of its own.

#include "platform/InstallBundles.h"
#include "process/RunningFramework.h"
#include "support/FailingMemory.h"
#include "support/Host.h"
#include "support/TestBundles.h"
#include "unit/ZipText.h"
#include "unit/platform/ContextSeams.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using namespace ostrel::platform;
using namespace ostrel::test;
using cppmicroservices::Bundle;

namespace fs = std::filesystem;

namespace {

std::vector<std::string> textsOf(const std::vector<Bundle>& bundles)
{
    std::vector<std::string> texts;
    texts.reserve(bundles.size());
    for (const Bundle& bundle : bundles) {
        texts.push_back(bundle.GetLocation() + " " + bundle.GetSymbolicName() + " " + bundle.GetVersion().ToString());
    }
    return texts;
}

class InstallMemory : public testing::TestWithParam<FailingMemory::Fails> {
protected:
    InstallMemory()
    {
        // What an installed framework does without memory is not this project's.
        if (ostrel::process::runningFramework() != ostrel::bundle_reader::Framework::embedded) {
            seams.installBundles = [this](const std::string& location) {
                const UncountedMemory ofFramework;
                return reallyInstallBundles(host->context(), location);
            };
            seams.getBundles = [this] {
                const UncountedMemory ofFramework;
                return reallyGetBundles(host->context());
            };
        }
    }

    std::vector<Bundle> install() const { return installBundles(host->context(), path); }

    /// Each time in another framework, lets one more allocation of an installation succeed before one fails, after
    /// `prepare()`. The next attempt must give what the first one gives when none fails.
    template <class Prepare>
    void expectThatEachAllocationMayFail(Prepare prepare)
    {
        const auto makeHost = [&] {
            host = std::make_unique<Host>();
            prepare();
        };
        makeHost();
        const std::vector<std::string> wanted = textsOf(install());
        ASSERT_FALSE(wanted.empty());

        makeHost();
        std::vector<Bundle> bundles;
        std::string refusal;
        const std::size_t allocations = failEachAllocation(
            [&] {
                try {
                    bundles = install();
                } catch (const std::runtime_error& error) {
                    const UncountedMemory ofTest;
                    refusal = error.what();
                }
            },
            [&](const RunOfMemory& run) {
                EXPECT_EQ(refusal, "");
                if (!run.outOfMemory) {
                    EXPECT_EQ(textsOf(bundles), wanted);
                }
                EXPECT_EQ(textsOf(install()), wanted);
                bundles.clear();
                refusal.clear();
                makeHost();
            },
            GetParam());
        EXPECT_GT(allocations, wanted.size());
    }

    std::unique_ptr<Host> host;
    TemporaryDirectory directory;
    const Utf16Path path{directory.path().u16string()};
    ContextSeams seams;
};

TEST_P(InstallMemory, GivenNewFiles_WhenAllocationFails_ThenBadAllocPassesAndTheNextAttemptGivesAll)
{
    directory.write("a", bundleZip("a"));
    directory.write("b", zipText({{"b/manifest.json", manifestText("b")},
                                  {"b/text", std::string(1000, 'x')},
                                  {"c/manifest.json", manifestText("c", "1.2.3.qualifier_of_some_length")}}));
    fs::copy_file(testBundle("three_services"), directory.path() / "d.so");
    directory.write("readme", "no bundle");
    fs::create_directory(directory.path() / "sub");
    fs::create_symlink("a", directory.path() / "link");
    fs::create_symlink("nowhere", directory.path() / "nowhere");

    expectThatEachAllocationMayFail([] {});
}

TEST_P(InstallMemory, GivenFileInstalledByOtherSpelling_WhenAllocationFails_ThenBadAllocPassesAndTheNextAttemptGivesIt)
{
    directory.write("a", bundleZip("a"));

    expectThatEachAllocationMayFail(
        [this] { reallyInstallBundles(host->context(), (directory.path() / "." / "a").native()); });
}

INSTANTIATE_TEST_SUITE_P(Once, InstallMemory, testing::Values(FailingMemory::Fails::once));
INSTANTIATE_TEST_SUITE_P(FromThenOn, InstallMemory, testing::Values(FailingMemory::Fails::fromThenOn));

} // namespace
