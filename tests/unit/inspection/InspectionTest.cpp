#include "inspection/Inspection.h"

#include "support/TemporaryDirectory.h"
#include "support/TestBundles.h"
#include "unit/inspection/Manifests.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sys/resource.h>
#include <system_error>

using namespace ostrel::inspection;
using namespace ostrel::test;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

namespace {

class Inspect : public testing::Test {
protected:
    std::string path(const std::string& file) const { return directory.path() / file; }

    InspectedFile inspect(const std::string& content)
    {
        const Inspection inspection = inspectFile(directory.write("a.zip", content));
        EXPECT_THAT(inspection.files, SizeIs(1));
        EXPECT_FALSE(inspection.isDirectory);
        return inspection.files.at(0);
    }

    TemporaryDirectory directory;
};

TEST_F(Inspect, GivenArchive_WhenInspected_ThenItsBundleIsTold)
{
    const InspectedFile file = inspect(
        zipText({{"a/", ""},
                 {"a/MANIFEST.json", R"({"bundle.symbolic_name": "a", "bundle.version": "2.1", "bundle.activator": true,
            "zq": {"component": {"name": "c"}, "ostrelFilters": [{"language": "en"}]}})"},
                 {"a/text/one.txt", "1"},
                 {"a/two", "2"}}));

    EXPECT_EQ(file.kind, FileKind::archive);
    EXPECT_FALSE(file.framework);
    EXPECT_EQ(file.why, "");
    EXPECT_FALSE(file.fault);
    ASSERT_THAT(file.bundles, SizeIs(1));
    const InspectedBundle& bundle = file.bundles[0];
    EXPECT_EQ(bundle.symbolicName, "a");
    EXPECT_EQ(bundle.version, "2.1.0");
    EXPECT_EQ(bundle.componentName, "c");
    EXPECT_TRUE(bundle.activator);
    EXPECT_EQ(bundle.filters, R"([{"language": "en"}])");
    EXPECT_THAT(bundle.resources, ElementsAre("text/one.txt", "two"));
}

TEST_F(Inspect, GivenManifestWithDroppedAndRepeatedValues_WhenInspected_ThenHeadersAreWhatFrameworksTake)
{
    const InspectedFile file = inspect(bundleWith(
        "a",
        R"({"bundle.symbolic_name": "%a", "n": null, "big": 5000000000, "x": 1, "X": 2, "list": [null, "%t", 1.5]})"));

    EXPECT_EQ(file.bundles.at(0).headers, R"({
    "bundle.symbolic_name": "a",
    "x": 1,
    "list": [
        "t",
        1.5
    ]
})");
    EXPECT_EQ(file.bundles.at(0).version, "0.0.0");
    EXPECT_FALSE(file.bundles.at(0).componentName);
    EXPECT_FALSE(file.bundles.at(0).activator);
    EXPECT_EQ(file.bundles.at(0).filters, "");
}

TEST_F(Inspect, GivenLibrary_WhenInspected_ThenItsNeedsAndBundleAreTold)
{
    const InspectedFile file = inspectFile(testBundle("start_throws")).files.at(0);

    EXPECT_EQ(file.kind, FileKind::library);
    EXPECT_THAT(file.needed, Contains("libstdc++.so.6"));
    EXPECT_EQ(file.bundles.at(0).symbolicName, "start_throws");
}

TEST_F(Inspect, GivenBundleOfEitherFramework_WhenInspected_ThenItIsABundle)
{
    const InspectedFile embedded = inspect(contentOf(UNIT_OF_EMBEDDED) + bundleZip("a"));
    const InspectedFile installed = inspect(contentOf(UNIT_OF_INSTALLED) + bundleZip("a"));

    EXPECT_EQ(embedded.framework, "embedded");
    EXPECT_EQ(installed.framework, "installed");
    EXPECT_EQ(embedded.why + installed.why, "");
    EXPECT_FALSE(embedded.fault || installed.fault);
}

TEST_F(Inspect, GivenText_WhenItIsTheFile_ThenItIsAFault)
{
    const InspectedFile file = inspect("text");

    EXPECT_EQ(file.kind, FileKind::other);
    EXPECT_EQ(file.why, "the file is no bundle: it is neither a shared object nor a zip archive");
    ASSERT_TRUE(file.fault);
    EXPECT_EQ(file.fault->code, Code::notABundle);
    EXPECT_THAT(file.bundles, IsEmpty());
}

TEST_F(Inspect, GivenNoFile_WhenInspected_ThenItCannotBeRead)
{
    const InspectedFile file = inspectFile(path("missing")).files.at(0);

    EXPECT_EQ(file.fault->code, Code::unreadableFile);
    EXPECT_EQ(file.why, "the file cannot be read: No such file or directory");
}

TEST_F(Inspect, GivenFileThatCannotBeOpened_WhenInspected_ThenTheRemedyIsTrueForTheReason)
{
    EXPECT_EQ(inspectFile(path("missing")).files.at(0).fault->remedy,
              "it was there a moment ago; run the command again");
    EXPECT_EQ(inspectFile(std::string(300, 'x')).files.at(0).fault->remedy, "give the file a shorter path");
    EXPECT_EQ(inspectFile(directory.path()).files.at(0).fault->remedy, "check the file and the disk that it lies on");

    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none{0, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    const Inspection inspection = inspectFile(testBundle("start_throws"));
    setrlimit(RLIMIT_NOFILE, &before);

    EXPECT_EQ(inspection.files.at(0).why, "the file cannot be read: Too many open files");
    EXPECT_EQ(inspection.files.at(0).fault->remedy, "let more files be open at once (ulimit -n), or close some");
}

TEST_F(Inspect, GivenDirectory_WhenInspected_ThenEachFileComesInOrderAndTheVocabularyIsTold)
{
    directory.write("b.zip", bundleFiltered("b", R"([{"language": "en", "size": 2}, {"language": "de"}])"));
    directory.write("a.txt", "text");
    directory.write("c.so", "text");

    const Inspection inspection = inspectDirectory(directory.path());

    EXPECT_TRUE(inspection.isDirectory);
    ASSERT_THAT(inspection.files, SizeIs(3));
    EXPECT_EQ(inspection.files[0].file, path("a.txt"));
    EXPECT_EQ(inspection.files[0].why, "it is neither a shared object nor a zip archive");
    EXPECT_FALSE(inspection.files[0].fault) << "it may lie there";
    EXPECT_EQ(inspection.files[1].why, "");
    EXPECT_TRUE(inspection.files[2].fault);
    EXPECT_THAT(inspection.vocabulary,
                ElementsAre(Pair("language", ElementsAre("de", "en")), Pair("size", ElementsAre("2"))));
}

TEST_F(Inspect, GivenNoDirectory_WhenInspected_ThenTheErrorNamesIt)
{
    EXPECT_THROW(inspectDirectory(path("missing")), std::system_error);
}

TEST_F(Inspect, GivenInspection_WhenWrittenAsText_ThenAllIsInLines)
{
    directory.write("a.zip", zipText({{"a/manifest.json", componentManifest("a", R"("ostrelFilters": [{"x": "1"}])")},
                                      {"a/one", "1"}}));
    directory.write("b.so", "text\n");
    directory.write("c.txt", "text");

    EXPECT_EQ(toText(inspectDirectory(directory.path())),
              path("a.zip") +
                  ": an archive with 1 bundle\n"
                  "  bundle a 1.0.0, component component.a, without an activator\n"
                  "    filters: [{\"x\": \"1\"}]\n"
                  "    resources: one\n" +
                  path("b.so") +
                  ": a file of another kind\n"
                  "  no bundle: the file is no bundle: it is neither a shared object nor a zip archive [not-a-bundle]\n"
                  "  do: build it again if it is to be a bundle; else take it out of the directory\n" +
                  path("c.txt") +
                  ": a file of another kind\n"
                  "  no bundle: it is neither a shared object nor a zip archive\n"
                  "conditions that are declared:\n"
                  "  x: 1\n");
}

TEST_F(Inspect, GivenInspection_WhenWrittenAsJson_ThenAllOfItIsThere)
{
    directory.write("a.zip", bundleWith("a", "{\"bundle.symbolic_name\": \"a\", \"zq\": {\"ostrelFilters\": "
                                             "[{\"x\": \"\xff\"}], \"t\": \"\xfe\", \"l\": [\"b\", \"\xff\"]}}"));

    EXPECT_EQ(toJson(inspectDirectory(directory.path()), "test 1"),
              R"({
    "schema": "ostrel.inspection/1",
    "tool": "test 1",
    "files": [
        {
            "file": ")" +
                  path("a.zip") +
                  R"(",
            "kind": "archive",
            "framework": null,
            "bundles": [
                {
                    "symbolicName": "a",
                    "version": "0.0.0",
                    "componentName": null,
                    "activator": false,
                    "filters": [
                        {
                            "x": ")"
                  "\xEF\xBF\xBD"
                  R"(",
                            "xHex": "ff"
                        }
                    ],
                    "headers": {
                        "bundle.symbolic_name": "a",
                        "zq": {
                            "ostrelFilters": [
                                {
                                    "x": ")"
                  "\xEF\xBF\xBD"
                  R"(",
                                    "xHex": "ff"
                                }
                            ],
                            "t": ")"
                  "\xEF\xBF\xBD"
                  R"(",
                            "tHex": "fe",
                            "l": [
                                "b",
                                ")"
                  "\xEF\xBF\xBD"
                  R"("
                            ],
                            "lHex": [
                                "62",
                                "ff"
                            ]
                        }
                    },
                    "resources": []
                }
            ],
            "needed": [],
            "why": null
        }
    ],
    "vocabulary": [
        {
            "name": "x",
            "values": [
                ")"
                  "\xEF\xBF\xBD"
                  R"("
            ],
            "valuesHex": [
                "ff"
            ]
        }
    ]
}
)");
}

} // namespace
