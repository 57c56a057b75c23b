#include "contract/ThrownText.h"

#include <cppmicroservices/LDAPFilter.h>

#include <gtest/gtest.h>

#include <sstream>

using cppmicroservices::AnyMap;
using cppmicroservices::LDAPFilter;
using ostrel::test::thrownText;

TEST(FilterText, GivenAFilter_WhenWritten_ThenBlanksThatDoNotCountAreGone)
{
    const std::pair<const char*, const char*> cases[] = {
        {" (a=b) ", "(a=b)"},
        {"( a = b )", "(a= b )"},
        {"(& (a=b)\n(c=d) )", "(&(a=b)(c=d))"},
        {"(! (a=b))", "(!(a=b))"},
        {"(a!=b)", "(a!=b)"},
        {"(a==b)", "(a==b)"},
        {"(a b=c)", "(a b=c)"},
        {"(a=\\28)", "(a=28)"},
        {"(a=\\*\\(\\)\\\\)", "(a=\\*\\(\\)\\\\)"},
        {"(a=x(y))", "(a=x\\(y\\))"},
        {"(a=b*c)", "(a=b*c)"},
        {"(a~=B c)", "(a~=B c)"},
        {"(a>=1)", "(a>=1)"},
        {"(a<=1)", "(a<=1)"},
        {"(&(|(a=b)(c=d))(!(e=f)))", "(&(|(a=b)(c=d))(!(e=f)))"},
    };
    for (const auto& [text, expected] : cases) {
        std::ostringstream os;
        os << LDAPFilter(std::string(text));
        EXPECT_EQ(os.str(), expected);
        EXPECT_EQ(LDAPFilter(std::string(text)), LDAPFilter(std::string(expected)));
    }
}

TEST(FilterText, GivenAFaultyFilter_WhenRead_ThenTheTextQuotesThePlace)
{
    const std::string end = "Unexpected end of query: ";
    const std::pair<const char*, std::string> cases[] = {
        {"", "Null query: "},
        {" ", end},
        {"(", end},
        {"(a", end},
        {"(a=b", end},
        {"(&(a=b)", end},
        {"(a=\\)", end},
        {"(a=x(y)", end},
        {"()", "Malformed query: )"},
        {"(&)", "Malformed query: )"},
        {"a=b", "Malformed query: a=b"},
        {"(=b)", "Malformed query: =b)"},
        {"((a=b))", "Malformed query: (a=b))"},
        {"(&&(a=b))", "Malformed query: &(a=b))"},
        {"(&(a=b)c)", "Malformed query: c)"},
        {"(!a=b)", "Malformed query: a=b)"},
        {"(!(a=b)(c=d))", "Malformed query: "},
        {"(&(!(a=b)(c=d))(e=f))", "Malformed query: (e=f))"},
        {"(a)", "Undefined operator: )"},
        {"(a>b)", "Undefined operator: >b)"},
        {"(a(b=c)", "Undefined operator: (b=c)"},
        {"(a=b))", "Trailing garbage ')': )"},
        {"(a=b)  x", "Trailing garbage '  x':   x"},
        {"(a=b)\n", "Trailing garbage '\n': \n"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(thrownText<std::invalid_argument>([text = text] { LDAPFilter{std::string(text)}; }), expected);
    }
}

TEST(FilterText, GivenNoFilter_WhenUsed_ThenItIsFalseAndMatchesNothing)
{
    const LDAPFilter none;

    EXPECT_FALSE(none);
    EXPECT_EQ(none.ToString(), "");
    EXPECT_FALSE(none.Match(AnyMap{{"a", 1}}));
    EXPECT_FALSE(none.MatchCase(AnyMap()));
    EXPECT_TRUE(none == LDAPFilter());
    EXPECT_FALSE(none == LDAPFilter("(a=b)"));
}
