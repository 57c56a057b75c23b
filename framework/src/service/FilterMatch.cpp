// Matching a filter against what a service or a bundle says of itself.

#include "ldap/FilterAccess.h"
#include "service/ReferenceProperties.h"

#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/LDAPFilter.h"
#include "cppmicroservices/ServiceReferenceBase.h"

namespace cppmicroservices {

bool LDAPFilter::Match(ServiceReferenceBase const& reference) const
{
    return d && detail::ldap::FilterAccess::matches(*this, *detail::core::propertiesOf(reference));
}

bool LDAPFilter::Match(Bundle const& bundle) const
{
    return d && Match(bundle.GetHeaders()); // which throws for a handle on no bundle
}

} // namespace cppmicroservices
