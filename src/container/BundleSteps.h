#pragma once

#include <cppmicroservices/Bundle.h>

#include <string>

/// What starting and stopping do to a single bundle. Functions of their own, because a framework hands out an invalid
/// bundle handle only by accident, and both must hold for one.
namespace ostrel::us_container {

/// Yields the processor once and starts the bundle; returns false, having done nothing, for an invalid handle.
/// @throws what `Start` throws
bool startIfValid(cppmicroservices::Bundle& bundle);

/// Stops the bundle; returns whether it is down, that is installed or resolved.
///
/// @throws  what `GetState` throws; what `Stop` throws is logged
/// @logs    0x10 "Invalid bundle: ", "Error while stoping ", "Unknown error while stoping ", "Did not stop ", each
///          with `location`
bool stopAndCheck(cppmicroservices::Bundle& bundle, const std::string& location);

} // namespace ostrel::us_container
