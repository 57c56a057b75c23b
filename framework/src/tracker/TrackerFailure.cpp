#include "tracker/TrackerFailure.h"

#include "bundle/BundleContextPrivate.h"
#include "event/Events.h"
#include "framework/FrameworkCore.h"
#include "framework/HandleAccess.h"

namespace cppmicroservices::detail::core {

void reportTrackerFailure(BundleContext const& context, char const* message, std::exception_ptr const& exception)
{
    auto const& run = HandleAccess::run(context);
    auto const core = run ? run->core() : nullptr;
    if (core) {
        core->events().publish(FrameworkEvent::FRAMEWORK_ERROR, run->bundle(), message, exception);
    }
}

} // namespace cppmicroservices::detail::core
