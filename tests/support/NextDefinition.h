#pragma once

#include <dlfcn.h>
#include <stdexcept>
#include <string>

namespace ostrel::test {

/// The definition of a function that the test program itself defines too, in the library behind it.
///
/// A member function takes its object as a plain first argument, on every platform that this project is built for.
///
/// @param symbol  the mangled name
/// @throws std::logic_error if no library defines it
template <typename Function>
Function* nextDefinition(const char* symbol)
{
    void* const found = ::dlsym(RTLD_NEXT, symbol);
    if (found == nullptr) {
        throw std::logic_error{std::string{"no library defines "} + symbol};
    }
    return reinterpret_cast<Function*>(found);
}

} // namespace ostrel::test
