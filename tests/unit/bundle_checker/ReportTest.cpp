#include "bundle_checker/Report.h"

#include <gmock/gmock.h>

#include <sstream>

namespace {

using namespace ostrel::bundle_checker;

constexpr std::string_view text = "one\n two\r\n\n  three";

const Findings warnings{{Severity::warning, 5, "first"}, {Severity::warning, 6, "second"}};

class Report : public ::testing::Test {
protected:
    std::string written(const Findings& findings, Strictness strictness = Strictness::lenient)
    {
        m_out.str("");
        m_failed = writeFindings(m_out, "a/manifest.json", text, findings, strictness);
        return m_out.str();
    }

    std::ostringstream m_out;
    bool m_failed = false;
};

TEST_F(Report, GivenNoFindings_WhenWritten_ThenNothingIsSaid)
{
    EXPECT_EQ(written({}), "");
    EXPECT_FALSE(m_failed);
}

TEST_F(Report, GivenFindings_WhenWritten_ThenEachHasItsLineAndColumn)
{
    EXPECT_EQ(written({{Severity::error, 0, "zero"},
                       {Severity::error, 3, "three"},
                       {Severity::error, 4, "four"},
                       {Severity::error, 5, "five"},
                       {Severity::error, 7, "seven"},
                       {Severity::error, 7, "seven again"},
                       {Severity::error, 10, "ten"},
                       {Severity::error, text.size(), "end"}}),
              "a/manifest.json:1:1: error: zero\n"
              "a/manifest.json:1:4: error: three\n"
              "a/manifest.json:2:1: error: four\n"
              "a/manifest.json:2:2: error: five\n"
              "a/manifest.json:2:4: error: seven\n"
              "a/manifest.json:2:4: error: seven again\n"
              "a/manifest.json:3:1: error: ten\n"
              "a/manifest.json:4:8: error: end\n");
    EXPECT_TRUE(m_failed);
}

TEST_F(Report, GivenWarnings_WhenWritten_ThenTheyAreNoFailure)
{
    EXPECT_EQ(written(warnings), "a/manifest.json:2:2: warning: first\na/manifest.json:2:3: warning: second\n");
    EXPECT_FALSE(m_failed);
}

TEST_F(Report, GivenErrorAmongWarnings_WhenWritten_ThenItIsAFailure)
{
    EXPECT_EQ(written({{Severity::error, 0, "first"}, {Severity::warning, 5, "second"}}),
              "a/manifest.json:1:1: error: first\na/manifest.json:2:2: warning: second\n");
    EXPECT_TRUE(m_failed);
}

TEST_F(Report, GivenStrictness_WhenWarningsAreWritten_ThenTheyAreErrorsThatSaySo)
{
    EXPECT_EQ(written({{Severity::error, 0, "first"}, {Severity::warning, 5, "second"}}, Strictness::strict),
              "a/manifest.json:1:1: error: first\n"
              "a/manifest.json:2:2: error: second [OSTREL_STRICT_MANIFESTS]\n");
    written(warnings, Strictness::strict);
    EXPECT_TRUE(m_failed);
}

TEST_F(Report, GivenPathWithControlCharacters_WhenWritten_ThenTheyAreEscaped)
{
    writeFindings(m_out, "a\x1b[2J", text, {{Severity::warning, 0, "first"}}, Strictness::lenient);

    EXPECT_EQ(m_out.str(), "a\\x1B[2J:1:1: warning: first\n");
}

} // namespace
