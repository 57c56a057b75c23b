#include "cli/ProgramRun.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <fstream>

namespace ostrel::test {

namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::string good = R"({"bundle.symbolic_name": "alpha", "zq": {"component": {"name": "alpha"}}})";
const std::string misspelt =
    R"({"bundle.symbolic_name": "beta", "zq": {"component": {"name": "beta"}, "ostrelFilter": []}})";

ProgramResult runChecker(const std::vector<std::string>& arguments)
{
    return runProgram(OSTREL_TEST_CHECKER, arguments);
}

void expectResult(const ProgramResult& result, int status, const std::string& said)
{
    EXPECT_EQ(result.status, status);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, said);
}

class Checker : public ::testing::Test {
protected:
    std::string write(const std::string& name, const std::string& text) const { return m_directory.write(name, text); }

    TemporaryDirectory m_directory;
};

} // namespace

TEST_F(Checker, GivenGoodManifest_ThenItIsSilent)
{
    expectResult(runChecker({"alpha", write("good.json", good)}), 0, "");
}

TEST_F(Checker, GivenWarnings_ThenStatusZero)
{
    const std::string path = write("b.json", misspelt);

    expectResult(runChecker({"beta", path}), 0,
                 path + R"(:1:72: warning: unknown key "ostrelFilter" in "zq": did you mean "ostrelFilters"?)" + '\n');
}

TEST_F(Checker, GivenWarningsAndStrict_ThenTheyAreErrorsAndStatusOne)
{
    const std::string path = write("b.json", misspelt);

    expectResult(runChecker({"--strict", "beta", path}), 1,
                 path + R"(:1:72: error: unknown key "ostrelFilter" in "zq": did you mean "ostrelFilters"?)" +
                     " [OSTREL_STRICT_MANIFESTS]\n");
}

TEST_F(Checker, GivenSeveralManifests_ThenAllAreChecked)
{
    const std::string broken = write("a.json", "{\n,}");
    const std::string missing = m_directory.path() / "none.json";
    const std::string path = write("b.json", misspelt);

    expectResult(runChecker({"alpha", broken, "gamma", missing, "beta", path}), 1,
                 broken + ":2:1: error: invalid JSON: a key was expected at ',}'\n" +
                     "ostrel_bundle_checker: error: cannot read '" + missing + "': No such file or directory\n" + path +
                     R"(:1:72: warning: unknown key "ostrelFilter" in "zq": did you mean "ostrelFilters"?)" + '\n');
}

TEST_F(Checker, GivenDirectory_ThenItCannotBeRead)
{
    const std::string path = m_directory.path();

    expectResult(runChecker({"alpha", path}), 1,
                 "ostrel_bundle_checker: error: cannot read '" + path + "': Is a directory\n");
}

TEST_F(Checker, GivenControlCharactersEverywhere_ThenNoneIsPrinted)
{
    const std::string path = write("a\x1b[2J.json", "{\"bundle.\x1b]0;x\x07\" : 1");

    const ProgramResult result = runChecker({"alpha", path});

    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err.find_first_of("\x1b\x07"), std::string::npos) << result.err;
    EXPECT_THAT(result.err, HasSubstr("a\\x1B[2J.json:1:10: error: invalid JSON: a control character inside a string"));
}

TEST_F(Checker, GivenManifestOfManyMegabytes_ThenItIsRefused)
{
    const std::string path = write("large.json", good);
    std::filesystem::resize_file(path, std::uintmax_t{3} << 30);

    expectResult(runChecker({"alpha", path}), 1,
                 path + ":1:1: error: the manifest is larger than 16777216 bytes, and is not read; put into RESOURCES "
                        "what is no manifest\n");
}

TEST_F(Checker, GivenWrongCall_ThenUsageAndStatusTwo)
{
    const std::vector<std::vector<std::string>> calls{{},
                                                      {"alpha"},
                                                      {"alpha", "a.json", "beta"},
                                                      {"--strict"},
                                                      {"--library"},
                                                      {"--library", "lib.so"},
                                                      {"--loud", "alpha", "a.json"}};
    for (const auto& arguments : calls) {
        const ProgramResult result = runChecker(arguments);

        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.err,
                    StartsWith("usage: ostrel_bundle_checker [--strict] [--library LIBRARY] NAME MANIFEST"));
    }
}

// The library has two bundles, "alpha" and "beta", both with "bundle.activator": true, and an activator of "alpha".
TEST_F(Checker, GivenLibraryWithActivator_ThenItIsSilent)
{
    expectResult(runChecker({"--library", OSTREL_TEST_CHECKED_LIBRARY, "alpha", "alpha.json"}), 0, "");
}

TEST_F(Checker, GivenLibraryWithoutActivatorOfOneBundle_ThenStatusOneAndTheMacroIsNamed)
{
    const ProgramResult result =
        runChecker({"--library", OSTREL_TEST_CHECKED_LIBRARY, "alpha", "alpha.json", "beta", "b/beta.json"});

    expectResult(result, 1,
                 R"(b/beta.json:4:24: error: key "bundle.activator" is true, but "libchecked_bundles.so" exports no )"
                 R"(activator of the bundle "beta" (those that it exports are of "alpha"; US_BUNDLE_NAME says which), )"
                 "so that it cannot start; write CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(<class>) in one of its "
                 "sources, or leave the key out\n");
}

TEST_F(Checker, GivenLibraryWithActivatorNobodyAsksFor_ThenItIsAWarning)
{
    const std::string warned =
        R"("libpassive_bundle.so" exports an activator of the bundle "passive", but key "bundle.activator" is not true: )"
        "the library is never loaded";

    expectResult(runChecker({"--library", OSTREL_TEST_PASSIVE_LIBRARY, "passive", "p.json"}), 0,
                 "p.json:1:1: warning: " + warned + '\n');
    expectResult(runChecker({"--strict", "--library", OSTREL_TEST_PASSIVE_LIBRARY, "passive", "p.json"}), 1,
                 "p.json:1:1: error: " + warned + " [OSTREL_STRICT_MANIFESTS]\n");
}

TEST_F(Checker, GivenLibraryWithoutTheBundle_ThenStatusOne)
{
    expectResult(runChecker({"--library", OSTREL_TEST_PASSIVE_LIBRARY, "alpha", "a.json"}), 1,
                 OSTREL_TEST_PASSIVE_LIBRARY ": error: the library holds no manifest of the bundle \"alpha\"\n");
}

TEST_F(Checker, GivenNoLibrary_ThenStatusOne)
{
    const std::string text = write("text.so", "text");
    const std::string missing = m_directory.path() / "none.so";

    expectResult(runChecker({"--library", text, "alpha", "a.json"}), 1,
                 "ostrel_bundle_checker: error: " + text + ": this is no ELF file\n");
    EXPECT_EQ(runChecker({"--library", missing, "alpha", "a.json"}).status, 1);
}

} // namespace ostrel::test
