#pragma once

#include <cxxabi.h>
#include <new>
#include <optional>

namespace ostrel::inspection {

/// What `work` returns, or none when it throws: values of foreign types may throw anything when they are rendered.
///
/// @throws std::bad_alloc
// UBSan: the reference to the unwinding of a thread that ends is null in libstdc++.
template <typename Work>
__attribute__((no_sanitize("null"))) auto attempted(Work work) -> std::optional<decltype(work())>
{
    try {
        return work();
    } catch (abi::__forced_unwind&) {
        throw; // the thread ends; whoever stops its unwinding ends the process
    } catch (const std::bad_alloc&) {
        throw; // says nothing about the value
    } catch (...) {
        return std::nullopt;
    }
}

} // namespace ostrel::inspection
