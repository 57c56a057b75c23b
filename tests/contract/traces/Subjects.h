#pragma once

#include "contract/traces/Choices.h"
#include "contract/traces/Trace.h"

#include <cstddef>

/// One function a subject: makes `steps` random calls and writes down what they did. What the framework of 3.8.4 leaves
/// undefined is not done.
namespace contract {

void traceValues(Choices& choices, Trace& trace, std::size_t steps);
void traceMaps(Choices& choices, Trace& trace, std::size_t steps);
void traceVersions(Choices& choices, Trace& trace, std::size_t steps);
void traceFilters(Choices& choices, Trace& trace, std::size_t steps);
void traceServices(Choices& choices, Trace& trace, std::size_t steps);

} // namespace contract
