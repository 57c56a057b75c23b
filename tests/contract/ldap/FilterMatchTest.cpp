#include "contract/ThrownText.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/LDAPFilter.h>
#include <cppmicroservices/ServiceReference.h>

#include <climits>
#include <gtest/gtest.h>

using namespace cppmicroservices;
using ostrel::test::thrownText;

namespace {

/// Expects that exactly the first ones of `filters`, up to the empty one, match `value` as property k.
void expectMatches(const Any& value, const std::vector<std::string>& filters)
{
    bool expected = true;
    for (const auto& filter : filters) {
        if (filter.empty()) {
            expected = false;
            continue;
        }
        const AnyMap properties{{"k", value}};
        EXPECT_EQ(LDAPFilter(filter).Match(properties), expected) << filter;
        EXPECT_EQ(LDAPFilter("(!" + filter + ")").Match(properties), !expected) << filter;
    }
}

} // namespace

TEST(FilterMatch, GivenText_WhenCompared_ThenCaseCountsAndStarsAreWildcards)
{
    expectMatches(std::string("Hello World"),
                  {"(k=Hello World)", "(k=H*d)", "(k=*o W*)", "(k=**)", "(k~=helloworld)", "(k>=Hello)", "(k<=Hellp)",
                   "(k>=Hello World)", "(k<=Hello World)", "(k<=*)", "", "(k=hello world)", "(k=H*o)", "(k~=h*)",
                   "(k=Hello\\*)", "(k=)", "(k>=h)"});
    expectMatches(static_cast<const char*>("aab"), {"(k=*a*a*b*)", "(k=a*b)", "(k~=A A B)", "", "(k=a*ba)"});
    expectMatches(std::string("*("), {"(k=\\*\\()", "(k=*)", "", "(k=\\*)"});
    expectMatches(std::string(), {"(k=)", "(k=*)", "(k=**)", "(k<=x)", "", "(k=x)"});
    expectMatches('c', {"(k=c)", "(k=*c)", "(k~=C)", "(k>=a)", "", "(k=99)"});
}

TEST(FilterMatch, GivenIntegers_WhenCompared_ThenALeadingNumberCounts)
{
    for (const Any& value : {Any(5), Any(5L), Any(5LL), Any(static_cast<short>(5)), Any(5U), Any(5UL), Any(5ULL),
                             Any(static_cast<unsigned short>(5)), Any(static_cast<unsigned char>(5))}) {
        expectMatches(value, {"(k=5)", "(k=05)", "(k= 5)", "(k=5x)", "(k=5.9)", "(k=5*)", "(k=+5)", "(k~=5)", "(k>=4)",
                              "(k>=5)", "(k<=5)", "(k=*)", "", "(k=6)", "(k=x)", "(k=)", "(k=**)",
                              "(k=9223372036854775808)", "(k<=9223372036854775808)"});
    }
    expectMatches(0, {"(k=4294967296)", "(k=0x5)", "", "(k=4294967297)"});
    expectMatches(UINT_MAX, {"(k=-1)", "(k=4294967295)", "", "(k=0)"});
}

TEST(FilterMatch, GivenRealNumbers_WhenCompared_ThenTheirPrecisionCounts)
{
    expectMatches(1.5, {"(k=1.5)", "(k=1.50)", "(k=1.5x)", "(k=0x1.8)", "(k>=1e0)", "(k>=1.5)", "(k<=1.5)", "(k<=inf)",
                        "", "(k=1)", "(k=x)", "(k<=nan)", "(k<=1e400)"});
    expectMatches(0.1F, {"(k=0.1)", "(k>=0.1)", "", "(k<=0.1)"});
    expectMatches(1.0, {"(k=0.9999999999999999)", "", "(k=1.0000000000000002)"});
    expectMatches(0.0, {"(k=2.2e-16)", "(k=5e-324)", "", "(k=2.3e-16)", "(k=1e-400)"});
}

TEST(FilterMatch, GivenTruthValues_WhenCompared_ThenBeginningsOfTheWordCount)
{
    expectMatches(true, {"(k=true)", "(k=TRUE)", "(k~=tRuE)", "(k=tru)", "(k=)", "(k=*)", "", "(k=1)", "(k=true )",
                         "(k= true)", "(k=t*)", "(k>=true)", "(k=false)"});
    expectMatches(false, {"(k=false)", "(k=F)", "", "(k=0)", "(k=true)"});
}

TEST(FilterMatch, GivenLists_WhenCompared_ThenAnyElementOfAKnownListCounts)
{
    expectMatches(std::vector<std::string>{"a", "b"}, {"(k=a)", "(k=b)", "(k=*)", "", "(k=c)"});
    expectMatches(std::list<std::string>{"a", "b"}, {"(k=b)", "", "(k=c)"});
    expectMatches(std::vector<Any>{5, Any(), std::vector<Any>{std::string("deep")}},
                  {"(k=5)", "(k=deep)", "", "(k=6)"});
    for (const Any& value : {Any(std::vector<int>{5}), Any(std::set<std::string>{"5"}), Any(std::list<Any>{5}),
                             Any(AnyMap{{"5", 5}}), Any(static_cast<signed char>(5)), Any(std::vector<Any>{})}) {
        expectMatches(value, {"(k=*)", "", "(k=5)", "(k~=5)", "(k>=5)", "(k<=5)", "(k=)", "(k=**)"});
    }
}

TEST(FilterMatch, GivenNoValue_WhenCompared_ThenNothingMatches)
{
    expectMatches(Any(), {"", "(k=*)", "(k=)", "(k<=x)", "(other=*)"});
}

TEST(FilterMatch, GivenGroups_WhenMatched_ThenTheyCombine)
{
    const AnyMap properties{{"a", 1}, {"b", 2}};
    const std::pair<const char*, bool> cases[] = {
        {"(&(a=1)(b=2))", true},
        {"(&(a=1)(b=3))", false},
        {"(&(a=0)(b=2))", false},
        {"(|(a=0)(b=2))", true},
        {"(|(a=0)(b=0)(c=*))", false},
        {"(|(&(a=1)(b=0))(!(c=*)))", true},
        {"(!(&(a=1)(|(b=2)(c=3))))", false},
        {"(&(|(a=0)(a=1))(|(b=0)(b=2)))", true},
        {"(!(|(!(a=1))(!(b=2))))", true},
    };
    for (const auto& [filter, expected] : cases) {
        EXPECT_EQ(LDAPFilter(std::string(filter)).Match(properties), expected) << filter;
    }
}

TEST(FilterMatch, GivenAnyKindOfMap_WhenMatched_ThenOnlyMatchCaseMindsTheCaseOfNames)
{
    for (const auto kind : {AnyMap::ORDERED_MAP, AnyMap::UNORDERED_MAP, AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS}) {
        const AnyMap properties(kind, {{"Key", 1}, {"b.c", 3}, {"n", AnyMap{{"x", 5}}}});

        EXPECT_TRUE(LDAPFilter("(kEY=1)").Match(properties));
        EXPECT_FALSE(LDAPFilter("(kEY=1)").MatchCase(properties));
        EXPECT_TRUE(LDAPFilter("(Key=1)").MatchCase(properties));
        EXPECT_TRUE(LDAPFilter("(b.c=3)").Match(properties));
        EXPECT_FALSE(LDAPFilter("(n.x=5)").Match(properties));
    }
}

TEST(FilterMatch, GivenKeysThatDifferByCase_WhenMatched_ThenItThrows)
{
    AnyMap properties(AnyMap::ORDERED_MAP, {{"Key", 1}, {"key", 2}, {"z", 1}});
    const std::string text = "Properties contain case variants of the key: Key";

    EXPECT_EQ(thrownText<std::runtime_error>([&] { LDAPFilter("(z=1)").Match(properties); }), text);
    EXPECT_EQ(thrownText<std::runtime_error>([&] { LDAPFilter("(z=1)").MatchCase(properties); }), text);
    for (int i = 0; i < 40; ++i) {
        properties["other" + std::to_string(i)] = i;
    }
    EXPECT_EQ(thrownText<std::runtime_error>([&] { LDAPFilter("(z=1)").Match(properties); }), text);
}

TEST(FilterMatch, GivenNoFilter_WhenMatched_ThenItMatchesNothing)
{
    const LDAPFilter none;

    EXPECT_FALSE(none.Match(AnyMap{{"k", 1}}));
    EXPECT_FALSE(none.MatchCase(AnyMap{{"k", 1}}));
    EXPECT_FALSE(none.Match(AnyMap(any_map::ORDERED_MAP, {{"k", 1}, {"K", 1}})));
    EXPECT_FALSE(none.Match(Bundle()));
    EXPECT_FALSE(none.Match(ServiceReferenceU()));
}
