#include "bundle_reader/manifest/Version.h"

#include <gmock/gmock.h>

#include <limits>
#include <string>

using namespace ostrel::bundle_reader;
using testing::ElementsAre;

namespace {

constexpr unsigned largest = std::numeric_limits<unsigned>::max();

/// The text of the version, or the fault behind an exclamation mark.
std::string read(const std::string& text)
{
    const VersionReading reading = readVersion(text);
    return reading.fault.empty() ? toText(reading.version) : "!" + reading.fault;
}

TEST(Version, GivenText_WhenRead_ThenNumbersAndQualifierAreFound)
{
    const VersionReading reading = readVersion("1.20.300.a_B-9");
    EXPECT_EQ(reading.fault, "");
    EXPECT_FALSE(reading.version.undefined);
    EXPECT_THAT(reading.version.numbers, ElementsAre(1u, 20u, 300u));
    EXPECT_EQ(reading.version.qualifier, "a_B-9");
}

TEST(Version, GivenPartsThatAreMissing_WhenRead_ThenTheyAreZero)
{
    EXPECT_EQ(read("7"), "7.0.0");
    EXPECT_EQ(read("7.8"), "7.8.0");
    EXPECT_EQ(read("7.8.9"), "7.8.9");
    EXPECT_EQ(read("7."), "7.0.0");
    EXPECT_EQ(read("7.8.9."), "7.8.9");
    EXPECT_EQ(read("7.8.9.."), "7.8.9");
    EXPECT_EQ(read("7.8.9.q."), "7.8.9.q");
}

TEST(Version, GivenEmptyText_WhenRead_ThenTheVersionIsUndefined)
{
    EXPECT_TRUE(readVersion("").version.undefined);
    EXPECT_EQ(read(""), "undefined");
    EXPECT_FALSE(readVersion("0").version.undefined);
}

TEST(Version, GivenPartThatIsNoNumber_WhenRead_ThenOnlyTheLastMustBeOne)
{
    EXPECT_EQ(read("1..2"), "1.0.2");
    EXPECT_EQ(read(".1"), "0.1.0");
    EXPECT_EQ(read("v1.2"), "0.2.0");
    EXPECT_EQ(read("+-1.2"), "0.2.0");
    for (const char* const text :
         {"v1", "1.x", "1.2.x", "1.2.x.q", "1.2..q", ".", "..", "...", " ", "-", "1. ", "1.-"}) {
        EXPECT_EQ(read(text), "!invalid format") << text;
    }
}

TEST(Version, GivenMoreThanANumber_WhenRead_ThenItIsFoundAsStreamsFindIt)
{
    EXPECT_EQ(read(" \t\n\v\f\r1.+2"), "1.2.0");
    EXPECT_EQ(read("1.0.0-rc1"), "1.0.0");
    EXPECT_EQ(read("0x10"), "0.0.0");
    EXPECT_EQ(read("007"), "7.0.0");
    EXPECT_EQ(read("1,5"), "1.0.0");
    EXPECT_EQ(read("-1"), "4294967295.0.0");
    EXPECT_EQ(read("-0.-4294967295"), "0.1.0");
    EXPECT_EQ(read("\xA0"
                   "1.2"),
              "0.2.0");
    EXPECT_EQ(read("- 1.2"), "0.2.0");
    EXPECT_EQ(read(std::string{"1\0.2", 4}), "1.2.0");
}

TEST(Version, GivenNumberThatIsTooBig_WhenRead_ThenItIsTheLargest)
{
    EXPECT_EQ(read("4294967295"), "4294967295.0.0");
    EXPECT_EQ(read("4294967296"), "!invalid format");
    EXPECT_EQ(read("-4294967296"), "!invalid format");
    EXPECT_EQ(readVersion("4294967296.1").version.numbers[0], largest);
    EXPECT_EQ(readVersion("-4294967296.1").version.numbers[0], largest);
    EXPECT_EQ(readVersion("18446744073709551617.1").version.numbers[0], largest);
    EXPECT_EQ(readVersion("1" + std::string(100, '0') + ".1").version.numbers[0], largest);
}

TEST(Version, GivenTooManyParts_WhenRead_ThenTheFormatIsInvalid)
{
    EXPECT_EQ(read("1.2.3.4.5"), "!invalid format");
    EXPECT_EQ(read("1.2.3.4.."), "!invalid format");
    EXPECT_EQ(read("1.2.3..."), "!invalid format");
    EXPECT_EQ(read("1.2.3.a b.5"), "!invalid format");
}

TEST(Version, GivenQualifier_WhenChecked_ThenItHoldsLettersDigitsAndTwoSigns)
{
    EXPECT_EQ(qualifierFault(""), "");
    EXPECT_EQ(qualifierFault("azAZ09_-"), "");
    for (const char* const text : {" ", "a b", "a.b", "+", "/", ":", "@", "[", "`", "{", "\xC3\xA4"}) {
        EXPECT_EQ(qualifierFault(text), std::string{"invalid qualifier: "} + text);
    }
    EXPECT_EQ(read("1.2.3.a b"), "!invalid qualifier: a b");
}

TEST(Version, GivenTextOfPlainParts_WhenRead_ThenItIsExact)
{
    for (const char* const text : {"", "0", "1.2", "1.2.3", "1.2.3.q", "1.2.3.-", "01.002", "4294967295.4294967295"}) {
        EXPECT_TRUE(readVersion(text).exact) << text;
    }
}

TEST(Version, GivenTextThatHoldsMore_WhenRead_ThenItIsNotExact)
{
    for (const char* const text : {"1.0.0-rc1", "-1", "+1", " 1", "1 .2", "1.", "1.2.3.", "1.2.3.q.", "1..2", "v1.2",
                                   "4294967296.1", "1x.2.3", "1.2x.3", "1.2.3x"}) {
        EXPECT_FALSE(readVersion(text).exact) << text;
    }
}

} // namespace
