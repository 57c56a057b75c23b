#include "platform/Utf16Path.h"

#include "platform/Utf8.h"

#include <gmock/gmock.h>

#include <stdexcept>

using namespace ostrel::platform;
using testing::HasSubstr;
using testing::ThrowsMessage;

namespace {

std::u16string joined(std::u16string base, const std::u16string& name, bool flag)
{
    joinPath(base, name, flag);
    return base;
}

TEST(Utf16PathValue, GivenStringAndFlag_WhenCopied_ThenBothAreKept)
{
    const Utf16Path original{u"a\\b", true};

    const Utf16Path copy = original;

    EXPECT_EQ(copy.path(), u"a\\b");
    EXPECT_TRUE(copy.flag());
    EXPECT_EQ(copy, original);
}

TEST(Utf16PathValue, GivenNoFlag_WhenMade_ThenItIsFalse)
{
    EXPECT_FALSE(Utf16Path{u"a"}.flag());
}

TEST(Utf16PathValue, GivenAnotherStringOrFlag_WhenCompared_ThenTheyDiffer)
{
    EXPECT_NE(Utf16Path(u"a", false), Utf16Path(u"a", true));
    EXPECT_NE(Utf16Path(u"a"), Utf16Path(u"b"));
}

TEST(JoinPath, GivenBase_WhenJoined_ThenOneSeparatorIsBetween)
{
    EXPECT_EQ(joined(u"a", u"b", false), u"a/b");
    EXPECT_EQ(joined(u"a/", u"b", false), u"a/b");
}

TEST(JoinPath, GivenEmptyBase_WhenJoined_ThenItIsTheName)
{
    EXPECT_EQ(joined(u"", u"b", false), u"b");
}

TEST(JoinPath, GivenBaseWithBackslash_WhenJoined_ThenTheFlagDecides)
{
    EXPECT_EQ(joined(u"a\\", u"b", true), u"a\\b");
    EXPECT_EQ(joined(u"a\\", u"b", false), u"a\\/b");
}

TEST(JoinPath, GivenNameWithSeparators_WhenJoined_ThenItIsUnchanged)
{
    EXPECT_EQ(joined(u"a", u"/b/", false), u"a//b/");
    EXPECT_EQ(joined(u"a/", u"\\b", true), u"a/\\b");
}

TEST(JoinPath, GivenEmptyName_WhenJoined_ThenNothingChanges)
{
    EXPECT_EQ(joined(u"a", u"", false), u"a");
    EXPECT_EQ(joined(u"", u"", true), u"");
}

TEST(ToUtf16, GivenUtf8OfAllLengths_WhenConverted_ThenItIsUtf16)
{
    EXPECT_EQ(toUtf16(""), u"");
    EXPECT_EQ(toUtf16("a\u00e9\u20ac\U0001f600"), u"a\u00e9\u20ac\U0001f600");
    EXPECT_EQ(toUtf16(std::string("a\0b", 3)), std::u16string(u"a\0b", 3));
}

TEST(ToUtf16, GivenNoUtf8_WhenConverted_ThenTheOffsetIsTold)
{
    EXPECT_THAT([] { toUtf16("ab\xff"); }, ThrowsMessage<std::runtime_error>(HasSubstr("at offset 2")));
    EXPECT_THAT([] { toUtf16("\xe2\x82"); }, ThrowsMessage<std::runtime_error>(HasSubstr("at offset 0")));
    EXPECT_THAT([] { toUtf16("a\xed\xa0\x80"); }, ThrowsMessage<std::runtime_error>(HasSubstr("at offset 1")));
    EXPECT_THAT([] { toUtf16("abc\xc0\x80"); }, ThrowsMessage<std::runtime_error>(HasSubstr("at offset 3")));
}

TEST(ToUtf8, GivenUtf16_WhenConverted_ThenItIsUtf8)
{
    EXPECT_EQ(toUtf8(u"a\u00e9\u20ac\U0001f600"), "a\u00e9\u20ac\U0001f600");
}

TEST(ToUtf8, GivenUnpairedSurrogate_WhenConverted_ThenTheOffsetIsTold)
{
    const std::u16string lead{u'a', char16_t{0xd800}};
    const std::u16string trail{char16_t{0xdc00}, u'a'};
    EXPECT_THAT([&] { toUtf8(lead); }, ThrowsMessage<std::runtime_error>(HasSubstr("offset 1")));
    EXPECT_THAT([&] { toUtf8(trail); }, ThrowsMessage<std::runtime_error>(HasSubstr("offset 0")));
}

} // namespace
