#pragma once

#include "ldap/Expression.h"
#include "ldap/MapAccess.h"

#include "cppmicroservices/LDAPFilter.h"

namespace cppmicroservices {

class LDAPFilterData {
public:
    ldap::Expression expression;
};

namespace ldap {

/// What the framework needs of a filter beyond its public operations.
class FilterAccess {
public:
    /// What every match must have; nothing for a default constructed filter, which matches nothing.
    static const Requirements& requirements(const LDAPFilter& filter)
    {
        static const Requirements none;
        return filter.d ? filter.d->expression.requirements : none;
    }

    /// Matches with `find(name)`, which gives the value of the property of that name, its case disregarded, as
    /// `const Any*`, or null. For properties that are known to have no case variants.
    template <class Find>
    static bool matchesWith(const LDAPFilter& filter, Find&& find)
    {
        return filter.d && filter.d->expression.matches(find);
    }

    /// Matches a map with case-insensitive keys.
    static bool matches(const LDAPFilter& filter, const any_map& properties)
    {
        return matchesWith(
            filter, [&properties](const std::string& name) { return MapAccess::findIgnoringCase(properties, name); });
    }
};

} // namespace ldap

} // namespace cppmicroservices
