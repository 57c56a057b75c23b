#pragma once

#include "cppmicroservices/AnyMap.h"

#include <memory>

namespace cppmicroservices {

class ServiceReferenceBase;

namespace core {

/// The properties of the service, the last known ones when it is unregistered; never null. Keys are found without
/// regard to case.
///
/// @throws std::logic_error on a default constructed reference
std::shared_ptr<AnyMap const> propertiesOf(ServiceReferenceBase const& reference);

} // namespace core

} // namespace cppmicroservices
