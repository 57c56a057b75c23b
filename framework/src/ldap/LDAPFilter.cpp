#include "cppmicroservices/LDAPFilter.h"

#include "ldap/FilterAccess.h"
#include "ldap/Parser.h"

#include <ostream>

namespace cppmicroservices {

LDAPFilter::LDAPFilter() = default;

LDAPFilter::LDAPFilter(std::string const& filter)
    : d(std::make_shared<LDAPFilterData>(LDAPFilterData{detail::ldap::parse(filter)}))
{
}

LDAPFilter::LDAPFilter(LDAPFilter const& other) = default;
LDAPFilter::~LDAPFilter() = default;
LDAPFilter& LDAPFilter::operator=(LDAPFilter const& filter) = default;

LDAPFilter::operator bool() const
{
    return d != nullptr;
}

bool LDAPFilter::Match(AnyMap const& dictionary) const
{
    if (!d) {
        return false;
    }
    detail::ldap::MapAccess::checkVariants(dictionary);
    return detail::ldap::FilterAccess::matches(*this, dictionary);
}

bool LDAPFilter::MatchCase(AnyMap const& dictionary) const
{
    if (!d) {
        return false;
    }
    detail::ldap::MapAccess::checkVariants(dictionary);
    return d->expression.matches([&dictionary](const detail::ldap::Comparison& comparison) {
        return detail::ldap::MapAccess::findExactly(dictionary, comparison.attribute());
    });
}

std::string LDAPFilter::ToString() const
{
    return d ? d->expression.text : std::string{};
}

bool LDAPFilter::operator==(LDAPFilter const& other) const
{
    return d == other.d || (d && other.d && d->expression.text == other.d->expression.text);
}

std::ostream& operator<<(std::ostream& os, LDAPFilter const& filter)
{
    return os << filter.ToString();
}

} // namespace cppmicroservices
