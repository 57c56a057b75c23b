#include "watch/Watch.h"

#include "frame/StandardStreams.h"
#include "watch/Activity.h"
#include "watch/Crash.h"
#include "watch/Exit.h"
#include "watch/TimeLimit.h"

namespace ostrel::host {

Watch::Watch(std::optional<std::chrono::duration<double>> limit)
{
    divertStandardOutput();
    tellCrashes();
    tellExits();
    step("the bundles were being installed");
    if (limit) {
        limitTime(*limit);
    }
}

Watch::~Watch()
{
    Activity::instance().step("the process was ending");
    allowExit();
}

void Watch::follow(cppmicroservices::BundleContext context)
{
    // No code of a bundle runs before its first event of these.
    context.AddBundleListener([](const cppmicroservices::BundleEvent& event) { Activity::instance().tell(event); });
}

void Watch::step(const char* what)
{
    Activity::instance().step(what);
}

} // namespace ostrel::host
