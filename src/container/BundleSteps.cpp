#include "container/BundleSteps.h"

#include "container/Record.h"

#include <cxxabi.h>
#include <exception>
#include <thread>

namespace ostrel::us_container {

bool startIfValid(cppmicroservices::Bundle& bundle)
{
    if (!bundle) {
        return false;
    }
    // KEPT ON PURPOSE: the yield. It gives threads that wait for the bundle before a chance to run.
    std::this_thread::yield();
    bundle.Start();
    return true;
}

// UBSan: the reference to the unwinding of a thread that ends is null in libstdc++.
__attribute__((no_sanitize("null"))) bool stopAndCheck(cppmicroservices::Bundle& bundle, const std::string& location)
{
    if (!bundle) {
        OSTREL_RECORD(messages::invalidBundle, location);
        return false;
    }

    try {
        bundle.Stop();
    } catch (abi::__forced_unwind&) {
        throw; // the activator ends the thread; whoever stops its unwinding ends the process
    } catch (const std::exception& e) {
        OSTREL_RECORD(messages::stopFailedCause, location, e.what());
    } catch (...) {
        OSTREL_RECORD(messages::stopFailedUnknown, location);
    }

    // A stop that threw may have stopped the bundle all the same, so the state decides, not the exception.
    const auto state = bundle.GetState();
    if (state == cppmicroservices::Bundle::STATE_INSTALLED || state == cppmicroservices::Bundle::STATE_RESOLVED) {
        return true;
    }
    OSTREL_RECORD(messages::didNotStop, location);
    return false;
}

} // namespace ostrel::us_container
