#pragma once

#include "container/Record.h"

#include <cxxabi.h>
#include <string>

namespace ostrel::us_container {

/// Runs one release of a held service and logs whatever it throws, in the same words for every exception.
///
/// The release is an argument because dropping a reference or a service pointer of the framework hardly ever throws,
/// and what happens then must hold all the same.
///
/// @logs 0x200 "Error while unloading service "`<name>`
// UBSan: the reference to the unwinding of a thread that ends is null in libstdc++.
template <typename Release>
__attribute__((no_sanitize("null"))) void releaseLogged(const std::string& name, Release release)
{
    try {
        release();
    } catch (abi::__forced_unwind&) {
        throw; // the service ends the thread; whoever stops its unwinding ends the process
    } catch (...) {
        OSTREL_RECORD(messages::unloadFailed, name);
    }
}

} // namespace ostrel::us_container
