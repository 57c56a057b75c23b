#pragma once

#include <string>
#include <typeinfo>

namespace cppmicroservices::detail {

/// The name of a type as C++ source would write it, for messages; the mangled name if it cannot be demangled.
std::string typeName(std::type_info const& type);

} // namespace cppmicroservices::detail
