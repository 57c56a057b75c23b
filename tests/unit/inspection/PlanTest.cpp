#include "inspection/Plan.h"

#include "support/Host.h"
#include "unit/inspection/Manifests.h"

#include <gmock/gmock.h>

#include <filesystem>

using namespace ostrel::inspection;
using namespace ostrel::test;
using ostrel::us_container::FilterMap;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

namespace ostrel::inspection {

/// What GoogleTest shows of a finding.
void PrintTo(const Finding& finding, std::ostream* out)
{
    *out << toText(finding.code) << " | " << finding.file << " | " << finding.bundle << " | " << finding.what << " | "
         << finding.why << " | " << finding.remedy;
}

} // namespace ostrel::inspection

namespace {

const FilterMap english{{"language", {"en", false}}};

class PlanDirectory : public HostFixture {
protected:
    Plan plan(PlanOptions options = {}) { return planDirectory(host.context(), host.directory(), english, options); }

    std::string path(const std::string& file) const { return host.directory() / file; }

    /// "file outcome reason" of each.
    std::vector<std::string> fates(const Plan& plan) const
    {
        std::vector<std::string> result;
        for (const PlannedBundle& bundle : plan.bundles) {
            result.push_back(bundle.file.substr(host.directory().native().size() + 1) + ' ' +
                             std::string{toText(bundle.outcome)} + ' ' + bundle.reason);
        }
        return result;
    }

    void writeGood(const std::string& file = "a.zip", const std::string& name = "a")
    {
        host.write(file, bundleFiltered(name, R"([{"language": "en"}])"));
    }

    /// The one finding over a file of that name and content, which the plan names too.
    Finding findingOf(const std::string& file, const std::string& content)
    {
        host.write(file, content);
        const Plan made = plan();
        EXPECT_THAT(made.findings, SizeIs(1));
        EXPECT_THAT(made.bundles, SizeIs(1));
        EXPECT_EQ(made.bundles.at(0).outcome, Outcome::fail);
        EXPECT_EQ(made.bundles.at(0).reason, toText(made.findings.at(0).code));
        EXPECT_EQ(made.bundles.at(0).text, "fails: " + made.findings.at(0).what + ": " + made.findings.at(0).why);
        EXPECT_EQ(made.findings.at(0).file, path(file));
        return made.findings.at(0);
    }
};

TEST_F(PlanDirectory, GivenBundles_WhenPlanned_ThenTheyComeInOrderWithTheirFate)
{
    host.write("b.zip", bundleFiltered("b", R"([{"language": "de"}])"));
    writeGood();
    host.write("c.zip", bundleWith("c", componentManifest("c")));

    const Plan made = plan();

    EXPECT_THAT(fates(made), ElementsAre("a.zip start alternative-matches", "b.zip skip value-differs",
                                         "c.zip start no-declaration"));
    EXPECT_EQ(made.bundles[0].symbolicName, "a");
    EXPECT_EQ(made.bundles[0].version, "1.0.0");
    EXPECT_EQ(made.bundles[0].componentName, "component.a");
    EXPECT_EQ(made.bundles[0].sha256, "");
    EXPECT_EQ(made.conditions, (Conditions{{"language", "en", false}}));
    EXPECT_THAT(made.vocabulary, ElementsAre(testing::Pair("language", ElementsAre("de", "en"))));
}

TEST_F(PlanDirectory, GivenBundles_WhenPlanned_ThenNoneIsStarted)
{
    host.add("start_throws");

    EXPECT_THAT(fates(plan()), ElementsAre("libstart_throws.so start no-declaration"));
    EXPECT_EQ(host.bundleIn("libstart_throws.so").GetState(), cppmicroservices::Bundle::STATE_INSTALLED);
}

TEST_F(PlanDirectory, GivenOneThatFails_WhenNotToKeepGoing_ThenNoOtherIsReached)
{
    writeGood();
    host.write("b.so", "text");
    writeGood("c.zip", "c");

    const Plan made = plan();

    EXPECT_THAT(fates(made), ElementsAre("a.zip not-reached alternative-matches", "b.so fail not-a-bundle",
                                         "c.zip not-reached alternative-matches"));
    EXPECT_EQ(made.bundles[0].text, "is not reached: \"" + path("b.so") + "\" fails");
}

TEST_F(PlanDirectory, GivenSeveralThatFail_WhenToKeepGoing_ThenEachIsToldAndTheOthersStart)
{
    writeGood();
    host.write("b.so", "text");
    host.write("c.zip", bundleZip("c"));
    writeGood("d.zip", "d");

    const Plan made = plan({true, false});

    EXPECT_TRUE(made.keepGoing);
    EXPECT_THAT(fates(made), ElementsAre("a.zip start alternative-matches", "b.so fail not-a-bundle",
                                         "c.zip fail no-component-name", "d.zip start alternative-matches"));
    EXPECT_THAT(made.findings, SizeIs(2));
}

TEST_F(PlanDirectory, GivenTwoBundlesInAFile_WhenOneFailsAndToKeepGoing_ThenTheFileIsLeftOut)
{
    host.write("a.zip", zipText({{"a/manifest.json", componentManifest("a")}, {"b/manifest.json", manifestText("b")}}));

    const Plan made = plan({true, false});

    EXPECT_THAT(fates(made), ElementsAre("a.zip not-reached no-declaration", "a.zip fail no-component-name"));
    EXPECT_EQ(made.bundles[0].text, "is not reached: another bundle of its file fails");
}

TEST_F(PlanDirectory, GivenFilesWithoutBundles_WhenPlanned_ThenTheyArePassedOver)
{
    host.write("a.txt", "text");
    writeGood("b.zip", "b");
    fs::create_symlink("b.zip", host.directory() / "c.zip");

    const Plan made = plan();

    EXPECT_THAT(fates(made), ElementsAre("b.zip start alternative-matches"));
    EXPECT_THAT(made.passedOver,
                ElementsAre(PassedOver{path("a.txt"), "it is neither a shared object nor a zip archive"},
                            PassedOver{path("c.zip"), "it is another name of \"" + path("b.zip") + '"'}));
}

TEST_F(PlanDirectory, GivenNameThatIsNoUtf8_WhenPlanned_ThenItIsInstalledUnderIt)
{
    writeGood("a\xff.zip");
    host.write("b\xff.so", "text");

    EXPECT_THAT(fates(plan({true, false})),
                ElementsAre("a\xff.zip start alternative-matches", "b\xff.so fail not-a-bundle"));
    EXPECT_TRUE(host.bundleIn("a\xff.zip"));
}

TEST_F(PlanDirectory, GivenHashesWanted_WhenPlanned_ThenEachFileHasItsOwn)
{
    host.write("a.so", "abc");

    EXPECT_EQ(plan({false, true}).bundles.at(0).sha256,
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST_F(PlanDirectory, GivenNoDirectory_WhenPlanned_ThenTheErrorNamesIt)
{
    try {
        planDirectory(host.context(), path("missing"), english, {});
        FAIL() << "nothing was thrown";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
        EXPECT_EQ(std::string{error.what()}, path("missing") + ": No such file or directory");
    }
}

TEST_F(PlanDirectory, GivenFolderInIt_WhenPlanned_ThenThatIsTold)
{
    EXPECT_FALSE(plan().hasFolders);

    fs::create_directory(host.directory() / "folder");

    EXPECT_TRUE(plan().hasFolders);
}

// One file for each code; the texts as users see them.

TEST_F(PlanDirectory, GivenTextNamedLikeALibrary_WhenPlanned_ThenItIsNotABundle)
{
    EXPECT_EQ(findingOf("a.so", "text"),
              (Finding{Code::notABundle, path("a.so"), "", "the file is no bundle",
                       "it is neither a shared object nor a zip archive",
                       "build it again if it is to be a bundle; else take it out of the directory"}));
}

TEST_F(PlanDirectory, GivenDamagedArchive_WhenPlanned_ThenItsDamageIsTheReason)
{
    std::string archive = bundleZip("a");
    archive.resize(archive.size() - 10);

    const Finding finding = findingOf("a.zip", archive);

    EXPECT_EQ(finding.code, Code::damagedArchive);
    EXPECT_EQ(finding.what, "the archive in the file is damaged");
    EXPECT_EQ(finding.remedy, "build the bundle again, or copy the file again");
}

TEST_F(PlanDirectory, GivenHalfALibrary_WhenPlanned_ThenItIsTruncated)
{
    const std::string library = contentOf(host.directory() / host.add("start_throws"));
    fs::remove(host.directory() / "libstart_throws.so");

    const Finding finding = findingOf("a.so", library.substr(0, library.size() / 2));

    EXPECT_EQ(finding.code, Code::truncatedLibrary);
    EXPECT_EQ(finding.what, "the shared object is truncated");
    EXPECT_EQ(finding.remedy, "copy it again, or build it again");
}

TEST_F(PlanDirectory, GivenArchiveWithoutManifest_WhenPlanned_ThenItsRemedySaysWhereItGoes)
{
    const std::string remedy = "put a manifest.json into a folder named like the bundle, as ostrel_add_bundle(... "
                               "MANIFEST ...) does, and build the bundle again";

    EXPECT_EQ(findingOf("a.so", zipText({{"a/one", "1"}})),
              (Finding{Code::noManifest, path("a.so"), "", "the archive in the file holds no manifest of a bundle",
                       "its archive holds no <symbolic name>/manifest.json", remedy}));
    EXPECT_EQ(findingOf("a.so", zipText({{"manifest.json", "{}"}})).why,
              "the manifest.json in its archive lies in no folder");
}

TEST_F(PlanDirectory, GivenFolderWithoutManifest_WhenPlanned_ThenItIsNamed)
{
    EXPECT_EQ(
        findingOf("a.zip", zipText({{"a/manifest.json", componentManifest("a")}, {"b/one", "1"}})),
        (Finding{Code::folderWithoutManifest, path("a.zip"), "b",
                 "the folder \"b\" in the archive has no manifest.json", "each folder is one bundle and needs one",
                 "give it one, or move what it holds into the folder of a bundle; then build the file again"}));
}

TEST_F(PlanDirectory, GivenManifestThatIsNoJson_WhenPlanned_ThenThePlaceIsTold)
{
    EXPECT_EQ(findingOf("a.zip", bundleWith("a", "{\n  \"bundle.symbolic_name\": \"a\n}")),
              (Finding{Code::manifestSyntax, path("a.zip"), "a",
                       "the manifest of the bundle \"a\" is not valid JSON of an object",
                       "line 2, column 27 of manifest.json: invalid JSON: after the key \"bundle.symbolic_name\", the "
                       "string '\"a' "
                       "is not closed: its closing '\"' is missing; a line break in a string is written as \\n",
                       "correct it there, and build the bundle again"}));
}

TEST_F(PlanDirectory, GivenManifestThatIsAList_WhenPlanned_ThenItIsNoManifest)
{
    EXPECT_EQ(findingOf("a.zip", bundleWith("a", "[]")).code, Code::manifestSyntax);
}

TEST_F(PlanDirectory, GivenDeepManifest_WhenPlanned_ThenTheLimitIsTold)
{
    const std::string deep =
        R"({"bundle.symbolic_name": "a", "x": )" + std::string(250, '[') + std::string(250, ']') + '}';

    EXPECT_EQ(findingOf("a.zip", bundleWith("a", deep)),
              (Finding{Code::nestedTooDeep, path("a.zip"), "a", "the manifest of the bundle \"a\" is nested too deep",
                       "more than 200 objects and arrays lie in one another",
                       "nest them less deep, and build the bundle again"}));
}

TEST_F(PlanDirectory, GivenNoSymbolicName_WhenPlanned_ThenTheKeyIsNamed)
{
    EXPECT_EQ(
        findingOf("a.zip", bundleWith("a", "{}")),
        (Finding{Code::noSymbolicName, path("a.zip"), "a", "the manifest of the bundle \"a\" gives no symbolic name",
                 "it has no key \"bundle.symbolic_name\"",
                 "write \"bundle.symbolic_name\": \"a\", and build the bundle again"}));
    EXPECT_EQ(findingOf("a.zip", bundleWith("a", R"({"bundle.symbolic_name": ""})")).why,
              "its \"bundle.symbolic_name\" is empty");
}

TEST_F(PlanDirectory, GivenBadVersion_WhenPlanned_ThenTheRemedyIsToWriteAnother)
{
    const Finding finding = findingOf("a.zip", bundleZip("a", "v1"));

    EXPECT_EQ(finding.code, Code::badVersion);
    EXPECT_EQ(finding.what, "the version of the bundle \"a\" is none");
    EXPECT_EQ(finding.remedy,
              R"(write it as "1", "1.2", "1.2.3" or "1.2.3.name" in the manifest, and build the bundle again)");
    EXPECT_EQ(findingOf("a.zip", bundleWith("a", R"({"bundle.symbolic_name": "a", "bundle.version": 1})")).why,
              "its \"bundle.version\" cannot be used: it is no string");
}

TEST_F(PlanDirectory, GivenSecondFileWithTheSameBundle_WhenPlanned_ThenItFailsAndNamesTheFirst)
{
    writeGood();
    writeGood("b.zip");

    const Plan made = plan({true, false});

    EXPECT_THAT(fates(made), ElementsAre("a.zip start alternative-matches", "b.zip fail duplicate-bundle"));
    EXPECT_EQ(made.bundles[1].symbolicName, "a");
    EXPECT_EQ(made.bundles[1].version, "1.0.0");
    EXPECT_EQ(made.bundles[1].componentName, "component.a");
    EXPECT_THAT(made.findings,
                ElementsAre(Finding{Code::duplicateBundle, path("b.zip"), "a",
                                    "the bundle \"a\", version 1.0.0, is there already",
                                    '"' + path("a.zip") + "\" holds it too",
                                    "remove one of the two files, or give one of the bundles another version"}));
}

TEST_F(PlanDirectory, GivenNoComponentName_WhenPlanned_ThenTheKeyIsNamed)
{
    EXPECT_EQ(
        findingOf("a.zip", bundleZip("a")),
        (Finding{Code::noComponentName, path("a.zip"), "a", "the bundle \"a\" has no component name",
                 R"(its manifest has no "zq": {"component": {"name": ...}}, by which the container knows a bundle)",
                 "add it to the manifest, and build the bundle again"}));
}

TEST_F(PlanDirectory, GivenBundlesForBothFrameworks_WhenPlanned_ThenTheOtherOnesIsRefused)
{
    const std::string manifest = componentManifest("a");
    host.write("embedded.so", contentOf(UNIT_OF_EMBEDDED) + bundleWith("a", manifest));
    host.write("installed.so", contentOf(UNIT_OF_INSTALLED) + bundleWith("a", manifest));

    const Plan made = plan({true, false});

    ASSERT_THAT(made.findings, SizeIs(1));
    const bool onEmbedded = made.findings[0].file == path("installed.so");
    const Finding onEmbeddedFinding{
        Code::otherFramework,
        path("installed.so"),
        "",
        "the bundle was built for an installed CppMicroServices",
        "it needs \"libCppMicroServices.so.3.8.4\", but this program runs on the embedded framework",
        "build the bundle with OSTREL_FRAMEWORK=embedded, or the program with OSTREL_FRAMEWORK=system"};
    const Finding onInstalledFinding{
        Code::otherFramework,
        path("embedded.so"),
        "",
        "the bundle was built for the embedded framework",
        "it needs \"libostrel_framework.so.1\", but this program runs on an installed CppMicroServices",
        "build the bundle with OSTREL_FRAMEWORK=system, or the program with OSTREL_FRAMEWORK=embedded"};
    EXPECT_EQ(made.findings[0], onEmbedded ? onEmbeddedFinding : onInstalledFinding);
}

} // namespace
