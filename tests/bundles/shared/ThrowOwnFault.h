#pragma once

namespace ostrel::test {

/// Thrown by a test's action inside the bundle "wild": the bundle throws an object of a class of its own instead, whose
/// destructor lies in the bundle's library and which no standard exception is a base of.
struct ThrowOwnFault {};

} // namespace ostrel::test
