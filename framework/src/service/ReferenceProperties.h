#pragma once

#include <memory>

namespace cppmicroservices {

class ServiceReferenceBase;

namespace detail::ldap {
class PropertyTable;
}

namespace detail::core {

/// The properties of the service, the last known ones when it is unregistered; never null. Keys are found without
/// regard to case.
///
/// @throws std::logic_error on a default constructed reference
std::shared_ptr<detail::ldap::PropertyTable const> propertiesOf(ServiceReferenceBase const& reference);

} // namespace detail::core

} // namespace cppmicroservices
