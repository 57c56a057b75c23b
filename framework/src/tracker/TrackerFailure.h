#pragma once

#include <exception>

namespace cppmicroservices {

class BundleContext;

namespace detail::core {

/// Sends a framework event of type ERROR, for what cannot be thrown. Without effect when the framework is gone.
void reportTrackerFailure(BundleContext const& context, char const* message, std::exception_ptr const& exception);

} // namespace detail::core
} // namespace cppmicroservices
