#include "bundle_checker/ManifestCheck.h"
#include "support/TemporaryDirectory.h"
#include "unit/ZipText.h"
#include "unit/bundle_checker/ManifestTable.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <stdexcept>

namespace {

using namespace ostrel::bundle_checker;
using ostrel::test::ManifestGroup;
using ostrel::test::ManifestRow;

bool hasErrors(const ManifestRow& row)
{
    const Findings findings = checkManifest(row.text, "alpha");
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding& finding) { return finding.severity == Severity::error; });
}

/// A framework in which bundles are installed one after the other.
class FrameworkAgrees : public ::testing::TestWithParam<ManifestGroup> {
protected:
    FrameworkAgrees() { m_framework.Start(); }
    ~FrameworkAgrees() override
    {
        m_framework.Stop();
        m_framework.WaitForStop(std::chrono::milliseconds::zero());
    }

    /// Nothing when the framework takes a bundle with this manifest, else what it says.
    std::string refusal(const ManifestRow& row)
    {
        const auto file =
            m_directory.write(row.name + ".zip", ostrel::test::zipText({{"alpha/manifest.json", row.text}}));
        try {
            for (auto& bundle : m_framework.GetBundleContext().InstallBundles(file.string())) {
                bundle.Uninstall();
            }
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return {};
    }

private:
    ostrel::test::TemporaryDirectory m_directory;
    cppmicroservices::Framework m_framework = cppmicroservices::FrameworkFactory().NewFramework();
};

TEST_P(FrameworkAgrees, GivenManifests_WhenInstalled_ThenThoseAreRefusedInWhichTheCheckerFindsErrors)
{
    for (const ManifestRow& row : GetParam().rows()) {
        const bool checkerAlone = row.agreement == ManifestRow::exceptFrameworks ||
                                  row.agreement == ManifestRow::exceptFrameworksAndSchema ||
                                  (row.agreement == ManifestRow::exceptInstalledOne && OSTREL_TEST_INSTALLED_FRAMEWORK);

        const std::string said = refusal(row);

        EXPECT_EQ(!said.empty(), hasErrors(row) && !checkerAlone) << row.name << ": " << said;
        // Else the row need not be marked.
        EXPECT_TRUE(!checkerAlone || hasErrors(row)) << row.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Manifests, FrameworkAgrees, ::testing::ValuesIn(ostrel::test::manifestGroups),
                         [](const auto& info) { return info.param.name; });

} // namespace
