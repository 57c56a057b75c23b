#include "ldap/FilterAccess.h"

#include <gtest/gtest.h>

using namespace cppmicroservices;

namespace {

using Classes = std::optional<std::vector<std::string>>;

detail::ldap::Requirements requirementsOf(const std::string& filter)
{
    return detail::ldap::FilterAccess::requirements(LDAPFilter(filter));
}

} // namespace

TEST(FilterRequirements, GivenAServiceId_WhenItMustBeThat_ThenItIsRequired)
{
    EXPECT_EQ(requirementsOf("(service.id=12)").serviceId, 12);
    EXPECT_EQ(requirementsOf("(&(a=b)(SERVICE.ID~=12))").serviceId, std::nullopt);
    EXPECT_EQ(requirementsOf("(&(a=b)(Service.Id=12))").serviceId, 12);
    for (const char* filter : {"(service.id=*)", "(service.id>=12)", "(!(service.id=12))", "(|(service.id=12)(a=b))",
                               "(|(a=b)(service.id=12))", "(|(service.id=1)(service.id=2))", "(id=12)"}) {
        EXPECT_EQ(requirementsOf(filter).serviceId, std::nullopt) << filter;
    }
}

TEST(FilterRequirements, GivenClasses_WhenOneMustBeThere_ThenTheyAreRequired)
{
    EXPECT_EQ(requirementsOf("(objectClass=my.I)").classes, Classes({"my.I"}));
    EXPECT_EQ(requirementsOf("(&(a=b)(objectclass=A))").classes, Classes({"A"}));
    EXPECT_EQ(requirementsOf("(|(objectclass=B)(objectclass=A)(objectclass=B))").classes, Classes({"A", "B"}));
    EXPECT_EQ(requirementsOf("(&(|(objectclass=B)(objectclass=A))(objectclass=C))").classes, Classes({"C"}));
    for (const char* filter : {"(objectclass=*)", "(objectclass=a*)", "(objectclass~=a)", "(!(objectclass=a))",
                               "(|(objectclass=a)(b=c))", "(|(b=c)(objectclass=a))"}) {
        EXPECT_EQ(requirementsOf(filter).classes, std::nullopt) << filter;
    }
}

TEST(FilterRequirements, GivenNoFilter_WhenAsked_ThenNothingIsRequired)
{
    EXPECT_FALSE(detail::ldap::FilterAccess::requirements(LDAPFilter()).serviceId);
    EXPECT_FALSE(detail::ldap::FilterAccess::requirements(LDAPFilter()).classes);
}

TEST(FilterNesting, GivenVeryDeepNesting_WhenReadAndMatched_ThenNeitherRecurses)
{
    constexpr int depth = 100000;
    std::string filter;
    for (int i = 0; i < depth; ++i) {
        filter += i % 2 == 0 ? "(!" : "(&";
    }
    filter += "(a=1)" + std::string(depth, ')');

    EXPECT_TRUE(LDAPFilter(filter).Match(AnyMap{{"a", 1}}));
    EXPECT_FALSE(LDAPFilter(filter).Match(AnyMap{{"a", 2}}));
}

TEST(FilterNesting, GivenManyWaysOutOfEachLevel_WhenRead_ThenTheCostIsNotTheSquareOfTheDepth)
{
    // The square takes minutes, which the test's time limit ends.
    constexpr int depth = 100000;
    for (const std::string sign : {"(&", "(|"}) {
        std::string filter;
        for (int i = 0; i < depth; ++i) {
            filter += (i % 2 == 0 ? "(|(objectclass=" + std::to_string(i) + ")" : sign + "(a=1)");
        }
        filter += "(a=1)" + std::string(depth, ')');

        EXPECT_TRUE(LDAPFilter(filter).Match(AnyMap{{"a", 1}}));
        EXPECT_FALSE(LDAPFilter(filter).Match(AnyMap{{"a", 2}}));
    }
    std::string classes;
    for (int i = 0; i < depth; ++i) {
        classes += "(|(objectclass=" + std::to_string(i) + ")";
    }
    classes += "(objectclass=x)" + std::string(depth, ')');
    EXPECT_EQ(requirementsOf(classes).classes->size(), depth + 1U);
}
