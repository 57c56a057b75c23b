#include "contract/ThrownText.h"

#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/LDAPFilter.h>
#include <cppmicroservices/LDAPProp.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <type_traits>

namespace {

using namespace cppmicroservices;
using ostrel::test::thrownText;

static_assert(std::is_constructible_v<LDAPProp, char const*>);
static_assert(!std::is_convertible_v<char const*, LDAPProp>);
static_assert(std::is_copy_constructible_v<LDAPProp>);
static_assert(!std::is_copy_assignable_v<LDAPProp>);
static_assert(!std::is_convertible_v<std::string, LDAPPropExpr>);
static_assert(std::is_convertible_v<LDAPProp, LDAPPropExpr>);
static_assert(std::is_convertible_v<LDAPPropExpr, std::string>);
static_assert(std::is_default_constructible_v<LDAPPropExpr>);
static_assert(std::is_copy_assignable_v<LDAPPropExpr>);

std::string text(LDAPPropExpr const& expression)
{
    return expression;
}

LDAPProp const k(std::string("k"));

TEST(Prop, isEqualToAnyKindOfValue)
{
    EXPECT_EQ("(k=v)", text(k == "v"));
    EXPECT_EQ("(k=v)", text(k == std::string("v")));
    char const* const pointer = "v";
    EXPECT_EQ("(k=v)", text(k == pointer));
    EXPECT_EQ("(k=c)", text(k == 'c'));
    EXPECT_EQ("(k=1)", text(k == 1));
    EXPECT_EQ("(k=1)", text(k == 1U));
    EXPECT_EQ("(k=-1)", text(k == -1L));
    EXPECT_EQ("(k=1.5)", text(k == 1.5));
    EXPECT_EQ("(k=true)", text(k == true));
    EXPECT_EQ("(k=false)", text(k == false));
    EXPECT_EQ("(k=x)", text(k == Any(std::string("x"))));
    EXPECT_EQ("(k=5)", text(k == Any(5)));
    EXPECT_EQ("(k=1)", text(k == Any(true)));
    EXPECT_EQ("(k=0)", text(k == Any(false)));
}

TEST(Prop, isUnequal)
{
    EXPECT_EQ("(!(k=v))", text(k != "v"));
    EXPECT_EQ("(!(k=v))", text(k != std::string("v")));
    EXPECT_EQ("(!(k=1))", text(k != 1));
    EXPECT_EQ("(!(k=1))", text(k != true));
    EXPECT_EQ("(!(k=0))", text(k != false));
    EXPECT_EQ("(!(k=5))", text(k != Any(5)));
}

TEST(Prop, isComparedByOrder)
{
    EXPECT_EQ("(k>=v)", text(k >= "v"));
    EXPECT_EQ("(k>=v)", text(k >= std::string("v")));
    EXPECT_EQ("(k>=2.5)", text(k >= 2.5F));
    EXPECT_EQ("(k>=5)", text(k >= Any(5)));
    EXPECT_EQ("(k<=v)", text(k <= "v"));
    EXPECT_EQ("(k<=v)", text(k <= std::string("v")));
    EXPECT_EQ("(k<=1)", text(k <= 1));
    EXPECT_EQ("(k<=5)", text(k <= Any(5)));
}

TEST(Prop, isComparedApproximately)
{
    EXPECT_EQ("(k~=v)", text(k.Approx("v")));
    EXPECT_EQ("(k~=v)", text(k.Approx(std::string("v"))));
    EXPECT_EQ("(k~=1)", text(k.Approx(1)));
    EXPECT_EQ("(k~=1)", text(k.Approx(true)));
    EXPECT_EQ("(k~=5)", text(k.Approx(Any(5))));
}

TEST(Prop, aloneAsksForPresence)
{
    EXPECT_EQ("(k=*)", text(k));
    EXPECT_EQ("(!(k=*))", text(!k));
    EXPECT_EQ("(&(k=*)(k=*))", text(k && k));
}

TEST(Prop, withAnEmptyTextIsNull)
{
    std::string const none;
    EXPECT_TRUE((k == none).IsNull());
    EXPECT_TRUE((k != none).IsNull());
    EXPECT_TRUE((k >= none).IsNull());
    EXPECT_TRUE((k <= none).IsNull());
    EXPECT_TRUE(k.Approx(none).IsNull());
    EXPECT_TRUE((k == Any(none)).IsNull());
    EXPECT_TRUE((k != Any(none)).IsNull());
    EXPECT_TRUE((k != "").IsNull());
    EXPECT_TRUE((k >= "").IsNull());
    EXPECT_EQ("(k=)", text(k == ""));
}

TEST(Prop, refusesWhatHasNoText)
{
    EXPECT_EQ("property must not be empty", thrownText<std::invalid_argument>([] { LDAPProp{std::string()}; }));
    EXPECT_EQ("empty any", thrownText<std::logic_error>([] { text(k == Any()); }));
    EXPECT_EQ("empty any", thrownText<std::logic_error>([] { text(k != Any()); }));
    EXPECT_EQ("empty any", thrownText<std::logic_error>([] { text(k >= Any()); }));
    EXPECT_EQ("empty any", thrownText<std::logic_error>([] { text(k <= Any()); }));
    EXPECT_EQ("empty any", thrownText<std::logic_error>([] { text(k.Approx(Any())); }));
}

TEST(Prop, escapesNothing)
{
    EXPECT_EQ("(k=(a*)\\)", text(k == "(a*)\\"));
    EXPECT_EQ("( k =1)", text(LDAPProp(" k ") == 1));
}

TEST(PropExpression, combines)
{
    EXPECT_EQ("(&(k=1)(k=2))", text((k == 1) && (k == 2)));
    EXPECT_EQ("(|(k=1)(k=2))", text((k == 1) || (k == 2)));
    EXPECT_EQ("(&(&(k=1)(k=2))(k=3))", text((k == 1) && (k == 2) && (k == 3)));
    EXPECT_EQ("(|(&(k=1)(k=2))(!(k=*)))", text(((k == 1) && (k == 2)) || !k));
    EXPECT_EQ("(!(k=1))", text(!(k == 1)));
    EXPECT_EQ("(!(!(k=1)))", text(!!(k == 1)));
}

TEST(PropExpression, isNotChangedByANullOne)
{
    LDAPPropExpr const null;
    EXPECT_EQ("(k=1)", text(null && (k == 1)));
    EXPECT_EQ("(k=1)", text((k == 1) && null));
    EXPECT_EQ("(k=1)", text(null || (k == 1)));
    EXPECT_EQ("(k=1)", text((k == 1) || null));
    EXPECT_EQ("", text(null && null));
    EXPECT_EQ("", text(null || null));
    EXPECT_EQ("", text(!LDAPPropExpr()));
}

TEST(PropExpression, knowsWhetherItIsNull)
{
    EXPECT_TRUE(LDAPPropExpr().IsNull());
    EXPECT_TRUE(LDAPPropExpr(std::string()).IsNull());
    EXPECT_FALSE(LDAPPropExpr(std::string("x")).IsNull());
    EXPECT_EQ("x", text(LDAPPropExpr(std::string("x"))));
}

TEST(PropExpression, isBuiltStepByStep)
{
    LDAPPropExpr expression;
    expression &= k == 1;
    EXPECT_EQ("(k=1)", text(expression));
    expression &= k == 2;
    EXPECT_EQ("(&(k=1)(k=2))", text(expression));
    expression |= k == 3;
    EXPECT_EQ("(|(&(k=1)(k=2))(k=3))", text(expression));
    expression |= LDAPPropExpr();
    expression &= LDAPPropExpr();
    EXPECT_EQ("(|(&(k=1)(k=2))(k=3))", text(expression));
    expression = k == 1;
    auto const& same = expression;
    expression &= same;
    EXPECT_EQ("(&(k=1)(k=1))", text(expression));
}

TEST(PropExpression, isNegatedInPlace)
{
    LDAPPropExpr expression = k == 1;
    EXPECT_EQ(&expression, &!expression);
    EXPECT_EQ("(!(k=1))", text(expression));
}

TEST(PropExpression, makesAFilter)
{
    LDAPFilter const filter(LDAPProp("colour") == "red" && LDAPProp("size") >= 3 && !LDAPProp("old"));
    EXPECT_EQ("(&(&(colour=red)(size>=3))(!(old=*)))", filter.ToString());
    EXPECT_TRUE(filter.Match(AnyMap({{"colour", std::string("red")}, {"size", 4}})));
    EXPECT_FALSE(filter.Match(AnyMap({{"colour", std::string("red")}, {"size", 4}, {"old", true}})));
    EXPECT_EQ("Null query: ", thrownText<std::invalid_argument>([] { LDAPFilter{LDAPPropExpr()}; }));
}

} // namespace
