#pragma once

#include "cppmicroservices/Any.h"

#include <string>
#include <unordered_map>

namespace cppmicroservices {

/// The properties given when a service is registered. Keys must stay distinct when case is ignored; the framework
/// checks that on registration.
using ServiceProperties = std::unordered_map<std::string, Any>;

} // namespace cppmicroservices
