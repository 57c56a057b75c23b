#pragma once

#include "ldap/Expression.h"

#include <string>

namespace cppmicroservices::detail::ldap {

/// Reads a filter.
///
/// @throws std::invalid_argument with the kind of fault and the text from the faulty place on.
Expression parse(const std::string& text);

} // namespace cppmicroservices::detail::ldap
