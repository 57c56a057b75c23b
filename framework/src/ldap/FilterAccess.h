#pragma once

#include "ldap/Expression.h"
#include "ldap/MapAccess.h"
#include "ldap/PropertyTable.h"

#include "cppmicroservices/LDAPFilter.h"

namespace cppmicroservices {

class LDAPFilterData {
public:
    detail::ldap::Expression expression;
};

namespace detail::ldap {

/// What the framework needs of a filter beyond its public operations.
class FilterAccess {
public:
    /// What every match must have; nothing for a default constructed filter, which matches nothing.
    static const Requirements& requirements(const LDAPFilter& filter)
    {
        static const Requirements none;
        return filter.d ? filter.d->expression.requirements : none;
    }

    /// Matches a map that is known to have no case variants of a key; keys are found in any case.
    static bool matches(const LDAPFilter& filter, const any_map& properties)
    {
        return filter.d && filter.d->expression.matches([&properties](const Comparison& comparison) {
            return MapAccess::findIgnoringCase(properties, comparison.attribute());
        });
    }

    static bool matches(const LDAPFilter& filter, const PropertyTable& properties)
    {
        return filter.d && filter.d->expression.matches([&properties](const Comparison& comparison) {
            return properties.find(comparison.attribute(), comparison.mark());
        });
    }
};

} // namespace detail::ldap

} // namespace cppmicroservices
