#include "cli/CommandRun.h"
#include "cli/Json.h"
#include "cli/ZipBundle.h"
#include "support/TestBundles.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <inspection/Code.h>
#include <inspection/FilterExplanation.h>
#include <regex>
#include <set>
#include <sstream>
#include <unistd.h>

namespace ostrel::test {

using testing::ElementsAreArray;

namespace {

/// Each code as the source, the page on findings, the schemas and the program have it.
class Codes : public CommandRun {
protected:
    void library(const std::string& target, const std::string& fileName) const
    {
        std::filesystem::copy_file(testBundle(target), path(fileName));
    }

    void manifest(const std::string& name, const std::string& text) const
    {
        directory.write(name + ".zip", zipBundle(name, text));
    }

    void writeFaultyFiles() const
    {
        write("twin");
        std::filesystem::copy_file(path("twin.zip"), path("twin_again.zip"));
        directory.write("text.so", "text");
        const std::string whole = zipBundle("damaged", "{}");
        directory.write("damaged.zip", whole.substr(0, whole.size() - 10));
        library("stop_throws", "truncated.so");
        std::filesystem::resize_file(path("truncated.so"), 5000);
        directory.write("no_manifest.so",
                        zipInMemory([](zip_t* archive) { zip_dir_add(archive, "a", ZIP_FL_ENC_UTF_8); }));
        directory.write("folder.zip", zipInMemory([](zip_t* archive) {
                            zip_dir_add(archive, "empty", ZIP_FL_ENC_UTF_8);
                            zip_source_t* const source = zip_source_buffer(archive, "{}", 2, 0);
                            zip_file_add(archive, "whole/manifest.json", source, ZIP_FL_ENC_UTF_8);
                        }));
        manifest("syntax", "{");
        manifest("deep",
                 R"({"bundle.symbolic_name": "deep", "x": )" + std::string(250, '[') + std::string(250, ']') + "}");
        manifest("nameless", "{}");
        manifest("version", R"({"bundle.symbolic_name": "version", "bundle.version": "v1"})");
        manifest("component", R"({"bundle.symbolic_name": "component"})");
        for (const char* const other : {OSTREL_TEST_OF_EMBEDDED, OSTREL_TEST_OF_INSTALLED}) {
            directory.write(std::filesystem::path{other}.filename(), contentOf(other) + zipBundle("other", "{}"));
        }
        write("unreadable");
        std::filesystem::permissions(path("unreadable.zip"), std::filesystem::perms::none);
    }

    /// The codes in brackets of all errors when one bundle is run.
    std::set<std::string> codesOfRun(const std::filesystem::path& bundle, const std::vector<std::string>& options) const
    {
        const TemporaryDirectory alone;
        std::filesystem::copy_file(bundle, alone.path() / bundle.filename());
        std::vector<std::string> arguments{"run", alone.path()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        std::istringstream lines{runHost(arguments).err};
        std::set<std::string> codes;
        for (std::string line; std::getline(lines, line);) {
            std::smatch code;
            if (std::regex_match(line, code, std::regex{"ostrel-host: error: .* \\[([a-z-]+)\\]"})) {
                codes.insert(code[1]);
            }
        }
        return codes;
    }

    static std::filesystem::path fault(const std::string& name)
    {
        return std::filesystem::path{OSTREL_TEST_FAULTS} / (name + ".so");
    }

    static std::vector<std::string> codesOfSource()
    {
        std::vector<std::string> codes;
        for (const inspection::Code code : inspection::allCodes()) {
            codes.emplace_back(toText(code));
        }
        return codes;
    }
};

std::vector<std::string> headingsOf(const std::string& page)
{
    std::istringstream lines{contentOf(page)};
    std::vector<std::string> headings;
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("## ", 0) == 0) {
            headings.push_back(line.substr(3));
        }
    }
    return headings;
}

} // namespace

TEST_F(Codes, GivenThePageOnFindings_ThenItHasASectionForEachCodeInTheSameOrder)
{
    EXPECT_THAT(headingsOf(OSTREL_TEST_FINDINGS), ElementsAreArray(codesOfSource()));
}

TEST_F(Codes, GivenABundleForEach_ThenTheProgramTellsThemAll)
{
    writeFaultyFiles();
    const ProgramResult plan = command("plan", {"--keep-going", "--json"});
    ASSERT_EQ(faultsBy("plan", plan.out), "");
    std::set<std::string> told;
    for (const std::string& code : Json{plan.out}["findings"].texts("code")) {
        told.insert(code);
    }
    const std::size_t ofFiles = told.size();
    for (const char* const name : {"missing_symbol", "start_throws", "stop_throws"}) {
        told.merge(codesOfRun(testBundle(name), {}));
    }
    for (const char* const name : {"needs_gone_library", "no_activator", "crashes_in_start", "exits_in_start",
                                   "hangs_in_start", "hangs_in_stop"}) {
        told.merge(codesOfRun(fault(name), {"--timeout", "0.5"}));
    }

    std::vector<std::string> expected = codesOfSource();
    if (geteuid() == 0) {
        // Nothing is unreadable to root by its permissions.
        expected.erase(std::find(expected.begin(), expected.end(), "unreadable-file"));
    }
    EXPECT_THAT(told, testing::UnorderedElementsAreArray(expected));
    EXPECT_EQ(ofFiles, geteuid() == 0 ? 12U : 13U);
}

TEST_F(Codes, GivenTheSchemaOfPlans_ThenItKnowsTheReasonsAndTheCodesOfFiles)
{
    const Json schema{contentOf(std::string{OSTREL_TEST_SCHEMAS} + "/plan.schema.json")};
    std::set<std::string> expected;
    for (auto reason = inspection::Reason::alternativeMatches; reason != inspection::Reason::noZqMap;
         reason = static_cast<inspection::Reason>(static_cast<int>(reason) + 1)) {
        expected.insert(std::string{toText(reason)});
    }
    for (const inspection::Code code : inspection::allCodes()) {
        if (code <= inspection::Code::otherFramework) {
            expected.insert(std::string{toText(code)});
        }
    }

    const std::vector<std::string> reasons =
        schema["properties"]["bundles"]["items"]["properties"]["reason"]["enum"].texts();

    EXPECT_THAT(reasons, testing::UnorderedElementsAreArray(expected));
}

TEST_F(Codes, GivenTheSchemaOfExplanations_ThenItKnowsAllReasonsAndVerdicts)
{
    const Json schema{contentOf(std::string{OSTREL_TEST_SCHEMAS} + "/explanation.schema.json")};
    const Json subject = schema["properties"]["subjects"]["items"]["properties"];
    std::vector<std::string> reasons;
    for (int reason = 0; reason <= static_cast<int>(inspection::Reason::noComponentName); ++reason) {
        reasons.emplace_back(toText(static_cast<inspection::Reason>(reason)));
    }
    std::vector<std::string> verdicts;
    for (int verdict = 0; verdict <= static_cast<int>(inspection::Verdict::notReached); ++verdict) {
        verdicts.emplace_back(toText(static_cast<inspection::Verdict>(verdict)));
    }

    EXPECT_EQ(subject["reason"]["enum"].texts(), reasons);
    EXPECT_EQ(subject["alternatives"]["items"]["properties"]["verdict"]["enum"].texts(), verdicts);
}

} // namespace ostrel::test
