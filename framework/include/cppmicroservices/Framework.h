#pragma once

#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/FrameworkConfig.h"

#include <chrono>
#include <map>
#include <memory>
#include <ostream>
#include <string>

namespace cppmicroservices {

class FrameworkEvent;

/// A handle on a framework, which is also its bundle number 0.
///
/// Start() makes it active; Stop() returns at once and stops it in another thread, so follow it with WaitForStop().
/// Where no thread can be made, Stop() does it in the calling one; inside of an activator or a listener of the
/// framework, for which it would wait, it throws std::runtime_error instead.
/// When the last handle on the framework or one of its bundles goes, the framework stops quietly in that thread.
class US_Framework_EXPORT Framework : public Bundle {
public:
    /// The framework of which `b` is bundle number 0.
    ///
    /// @throws std::invalid_argument when `b` is no bundle
    /// @throws std::logic_error when `b` is another bundle than number 0
    explicit Framework(Bundle b);

    Framework(Framework const& other);
    Framework(Framework&& other) noexcept;
    Framework& operator=(Framework const& other);
    Framework& operator=(Framework&& other) noexcept;

    /// Makes the context valid, without becoming active. Without effect when that is so already.
    ///
    /// @throws std::runtime_error when called from the thread that is stopping the framework
    void Init();

    /// Waits until a stop has ended, at most `timeout` (0: without limit).
    ///
    /// @return FRAMEWORK_STOPPED; FRAMEWORK_WAIT_TIMEDOUT after `timeout`; FRAMEWORK_ERROR when neither started nor
    ///         stopped before
    /// @throws std::runtime_error when waiting without limit could never end: called from inside an activator of one
    ///         of the framework's bundles, or from the thread that is stopping the framework
    FrameworkEvent WaitForStop(std::chrono::milliseconds const& timeout);

private:
    friend class detail::core::HandleAccess;

    Framework(std::shared_ptr<detail::core::BundleRecord> record, std::shared_ptr<detail::core::FrameworkHold> hold);
};

} // namespace cppmicroservices
