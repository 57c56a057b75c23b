#pragma once

#include <cxxabi.h>
#include <exception>
#include <string>
#include <utility>

namespace cppmicroservices::detail::core {

/// What an exception says of itself; "unknown" when it is no std::exception.
std::string reasonOf(std::exception_ptr const& exception);

/// Runs foreign code and returns what it throws, or null.
///
/// A thread that ends by pthread_exit() or pthread_cancel() is unwound as if by an exception, but one that nobody may
/// keep: the process would end. So `atThreadsEnd` is called then, and the unwinding passes.
// UBSan: the reference to the unwinding of a thread that ends is null in libstdc++.
template <class Code, class AtThreadsEnd>
__attribute__((no_sanitize("null"))) std::exception_ptr caughtFrom(Code&& code, AtThreadsEnd&& atThreadsEnd)
{
    try {
        std::forward<Code>(code)();
    } catch (abi::__forced_unwind&) {
        std::forward<AtThreadsEnd>(atThreadsEnd)();
        throw;
    } catch (...) {
        return std::current_exception();
    }
    return nullptr;
}

template <class Code>
std::exception_ptr caughtFrom(Code&& code)
{
    return caughtFrom(std::forward<Code>(code), [] {});
}

} // namespace cppmicroservices::detail::core
