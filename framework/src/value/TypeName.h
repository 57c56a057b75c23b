#pragma once

#include <string>
#include <typeinfo>

namespace cppmicroservices::detail {

/// The name of a type as C++ source would write it; the mangled name if it cannot be demangled.
///
/// @throws std::bad_alloc
std::string typeName(std::type_info const& type);

} // namespace cppmicroservices::detail
