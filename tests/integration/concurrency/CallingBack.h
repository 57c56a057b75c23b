#pragma once

#include "container/MicroServicesContainer.h"
#include "integration/support/Services.h"
#include "support/BundleScript.h"

#include <string>
#include <vector>

namespace ostrel::test {

/// Names the container that the calling thread uses, for the bundles and services which that container runs.
///
/// They call back into no other. A thread that holds one container's lock and waits for another's would be waited for
/// by a thread that does the opposite.
class CurrentContainer {
public:
    explicit CurrentContainer(us_container::MicroServicesContainer& container);
    CurrentContainer(const CurrentContainer&) = delete;
    CurrentContainer& operator=(const CurrentContainer&) = delete;
    ~CurrentContainer();
};

/// Lets the activators of the three scripted bundles alpha, beta and gamma call back, and the factories of their Words.
///
/// An activator starts and stops only bundles that come later in this list, because the framework holds a bundle while
/// its activator runs. For the same reason factories load only what needs no factory.
void callBackFrom(BundleScript& script, const std::vector<std::string>& fileNames);

/// Calls back when it is made and when it is destroyed.
class CallingGreeter final : public Greeter {
public:
    CallingGreeter();
    CallingGreeter(const CallingGreeter&) = delete;
    CallingGreeter& operator=(const CallingGreeter&) = delete;
    ~CallingGreeter() override;

    /// How many there are.
    static int alive();
};

/// How many calls came back so far.
unsigned timesCalledBack();

} // namespace ostrel::test
