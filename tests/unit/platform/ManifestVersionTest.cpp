// The versions that are read from manifests, beside those of the framework in use.
#include "bundle_reader/manifest/Version.h"

#include <cppmicroservices/BundleVersion.h>

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <string>
#include <vector>

using namespace ostrel::bundle_reader;
using cppmicroservices::BundleVersion;

namespace {

/// The text of the version, or the fault behind an exclamation mark.
std::string read(const std::string& text)
{
    const VersionReading reading = readVersion(text);
    return reading.fault.empty() ? toText(reading.version) : "!" + reading.fault;
}

std::string readByFramework(const std::string& text)
{
    try {
        return BundleVersion(text).ToString();
    } catch (const std::invalid_argument& e) {
        return std::string{"!"} + e.what();
    }
}

TEST(ManifestVersion, GivenText_WhenRead_ThenItIsAsTheFrameworkReadsIt)
{
    for (const char* const text : {"",
                                   "0",
                                   "1.2",
                                   "1.2.3",
                                   "1.2.3.q",
                                   "1.",
                                   "1.2.3.",
                                   "1.2.3..",
                                   "1.2.3...",
                                   "1.2.3.q.",
                                   "1.2.3.q.r",
                                   "1..2",
                                   ".1",
                                   ".",
                                   "..",
                                   "-1",
                                   "+1",
                                   "- 1",
                                   "1.-1",
                                   " 1",
                                   "\t\n\v\f\r1",
                                   "1 ",
                                   "1. ",
                                   "v1",
                                   "v1.2",
                                   "1x.2y.3z",
                                   "1.0.0-rc1",
                                   "0x10",
                                   "007",
                                   "4294967295",
                                   "4294967296",
                                   "4294967296.1",
                                   "-4294967295",
                                   "-4294967296",
                                   "-4294967296.1",
                                   "99999999999999999999.1",
                                   "1.2.x.q",
                                   "1.2.3.a b",
                                   "1.2.3.\xC3\xA4",
                                   "\xC2\xA0"
                                   "1"}) {
        EXPECT_EQ(read(text), readByFramework(text)) << text;
    }
}

TEST(ManifestVersion, GivenTextsOfAllSorts_WhenRead_ThenTheyAreAsTheFrameworkReadsThem)
{
    const std::vector<std::string> pieces{"0", "1", "9", "42", "4294967295", "4294967296", ".", ".",    ".",   ".",
                                          "-", "+", " ", "\t", "\n",         "\v",         "a", "_",    "rc1", "x",
                                          "%", ",", "e", "\r", "/",          ":",          "Z", "\xFF", "007"};
    std::mt19937 random{20240229};
    std::uniform_int_distribution<std::size_t> length{0, 10};
    std::uniform_int_distribution<std::size_t> piece{0, pieces.size() - 1};
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        for (std::size_t left = length(random); left > 0; --left) {
            text += pieces[piece(random)];
        }
        ASSERT_EQ(read(text), readByFramework(text)) << text;
    }
}

} // namespace
