#include "contract/ThrownText.h"

#include <cppmicroservices/BundleVersion.h>

#include <gtest/gtest.h>

#include <sstream>

using cppmicroservices::BundleVersion;
using ostrel::test::thrownText;

TEST(BundleVersionText, GivenAText_WhenRead_ThenMissingPartsAreZero)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", "undefined"},
        {"1", "1.0.0"},
        {"1.2.3.q", "1.2.3.q"},
        {"1.2.3.", "1.2.3"},
        {" 1.0", "1.0.0"},
        {"1..2", "1.0.2"},
        {".1", "0.1.0"},
        {"x.1", "0.1.0"},
        {"01.2", "1.2.0"},
        {"1.2x", "1.2.0"},
        {"0x10", "0.0.0"},
        {"1.2.3..", "1.2.3"},
        {"-1", "4294967295.0.0"},
        {"4294967296.1", "4294967295.1.0"},
        {"1.2.3.a_b-9", "1.2.3.a_b-9"},
    };
    for (const auto& [text, expected] : cases) {
        std::ostringstream os;
        os << BundleVersion(std::string(text));
        EXPECT_EQ(os.str(), expected) << text;
    }
}

TEST(BundleVersionText, GivenAFaultyText_WhenRead_ThenItThrows)
{
    for (const char* text : {"a", "1.a", "1.2.3.q.r", ".", "..", "1.2.x.q", "4294967296", " "}) {
        EXPECT_EQ(thrownText<std::invalid_argument>([text] { BundleVersion{std::string(text)}; }), "invalid format")
            << text;
    }
    EXPECT_EQ(thrownText<std::invalid_argument>([] { BundleVersion{std::string("1.2.3.a b")}; }),
              "invalid qualifier: a b");
    EXPECT_EQ(thrownText<std::invalid_argument>([] { BundleVersion(1, 2, 3, "a+"); }), "invalid qualifier: a+");
}

TEST(BundleVersionText, GivenBlanks_WhenParsed_ThenTheyDoNotCount)
{
    EXPECT_EQ(BundleVersion::ParseVersion(" ").ToString(), "0.0.0");
    EXPECT_EQ(BundleVersion::ParseVersion("  1.2.3.q ").ToString(), "1.2.3.q");
    EXPECT_EQ(thrownText<std::invalid_argument>([] { BundleVersion::ParseVersion("1.2.3.q\t"); }),
              "invalid qualifier: q\t");
}

TEST(BundleVersionOrder, GivenTwo_WhenCompared_ThenNumbersCountAsNumbers)
{
    EXPECT_LT(BundleVersion(1, 2, 3).Compare(BundleVersion(1, 10, 0)), 0);
    EXPECT_GT(BundleVersion(1, 2, 3, "b").Compare(BundleVersion(1, 2, 3, "a")), 0);
    EXPECT_LT(BundleVersion(1, 2, 3).Compare(BundleVersion(1, 2, 3, "a")), 0);
    EXPECT_TRUE(BundleVersion(std::string("1.0")) == BundleVersion(1, 0, 0));
}

TEST(BundleVersionUndefined, GivenNone_WhenUsed_ThenItSaysSo)
{
    const auto undefined = BundleVersion::UndefinedVersion();
    const BundleVersion one(1, 0, 0);

    EXPECT_TRUE(undefined.IsUndefined());
    EXPECT_TRUE(undefined == BundleVersion(std::string()));
    EXPECT_FALSE(one == undefined);
    EXPECT_EQ(thrownText<std::logic_error>([&] { static_cast<void>(undefined == one); }), "Version undefined");
    EXPECT_EQ(thrownText<std::logic_error>([&] { undefined.GetMajor(); }), "Version undefined");
    EXPECT_EQ(thrownText<std::logic_error>([&] { one.Compare(undefined); }), "Cannot compare undefined version");
}
