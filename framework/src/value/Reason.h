#pragma once

#include <exception>
#include <string>

namespace cppmicroservices::detail::core {

/// What an exception says of itself; "unknown" when it is no std::exception.
std::string reasonOf(std::exception_ptr const& exception);

/// That of the exception being handled.
inline std::string currentReason()
{
    return reasonOf(std::current_exception());
}

} // namespace cppmicroservices::detail::core
