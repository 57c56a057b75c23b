#pragma once

#include "ldap/PropertyTable.h"

#include "cppmicroservices/ServiceProperties.h"

#include <memory>
#include <string>
#include <vector>

namespace cppmicroservices::detail::core {

/// The properties of a service as registered, with those that every service has.
struct RegisteredProperties {
    std::shared_ptr<detail::ldap::PropertyTable const> all;
    long shownId = 0;
    int ranking = 0;
};

/// Adds "service.id", "objectclass" and "service.scope" to the given properties, unless given in exactly that spelling.
/// A ranking that is no int counts as 0.
///
/// @throws std::runtime_error when two names differ by case only
/// @throws BadAnyCastException for a given "service.id" that is no long or "objectclass" that is no string vector
RegisteredProperties propertiesAtRegistration(ServiceProperties const& given, long id,
                                              std::vector<std::string> const& objectClass, std::string const& scope);

/// Replaces all but the three that every service has; given values for those, in exactly that spelling, are ignored.
///
/// @throws std::runtime_error when two names differ by case only
/// @throws std::invalid_argument for a ranking that is no int
RegisteredProperties propertiesReplaced(ServiceProperties const& given, ServiceProperties const& old);

} // namespace cppmicroservices::detail::core
