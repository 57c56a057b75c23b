#include "watch/Culprit.h"

namespace ostrel::host {

SafeLine& writeCulprit(SafeLine& line, const Activity::Suspect& suspect, const char* did, const char* nobody) noexcept
{
    if (suspect.bundle != nullptr) {
        line << suspect.bundle->head << did;
    } else {
        line << "ostrel-host: error: " << nobody;
    }
    if (suspect.work != nullptr) {
        return line << (suspect.work->isStart ? " while it was being started" : " while it was being stopped");
    }
    const Activity& activity = Activity::instance();
    return line << (activity.isMainThread() ? " while " : " on another thread while ") << activity.currentStep();
}

} // namespace ostrel::host
