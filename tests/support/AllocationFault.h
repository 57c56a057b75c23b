#pragma once

namespace ostrel::test {

/// Lets one allocation of the process throw std::bad_alloc: the n-th from now on, whichever thread makes it.
///
/// Link `ostrel_test_allocations` into the test program, which then has an operator new of its own, the libraries
/// included. Only one lives at a time. What malloc() gives to others, as the dynamic loader, is not touched.
class AllocationFault {
public:
    explicit AllocationFault(long n);
    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;
    ~AllocationFault();

    /// Whether there was an n-th allocation. None fails any more.
    bool struck();
};

/// How many allocations the process made so far.
long allocationsSoFar();

} // namespace ostrel::test
