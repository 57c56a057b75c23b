#pragma once

#include <exception>
#include <string>

namespace cppmicroservices {

class BundleContext;

namespace detail::core {

/// Sends a framework event of type ERROR, for what cannot be thrown. Without effect when the framework is gone.
void reportTrackerFailure(BundleContext const& context, std::string const& message,
                          std::exception_ptr const& exception);

} // namespace detail::core
} // namespace cppmicroservices
