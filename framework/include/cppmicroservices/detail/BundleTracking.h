#pragma once

#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/BundleEvent.h"
#include "cppmicroservices/detail/TrackedItems.h"

#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>

namespace cppmicroservices::detail {

/// The part of a BundleTracker that does not depend on its type: which bundles, opening, closing.
class US_Framework_EXPORT BundleTracking {
public:
    BundleTracking(BundleContext context, std::uint32_t stateMask) noexcept;

    /// Tracks from now on; without effect when it does already.
    ///
    /// @throws std::runtime_error when the context is no longer valid
    /// @throws what the customizer throws; the bundles that come after the one it fails for are not added then
    void open(std::unique_ptr<TrackedBundles::Customizer> customizer);

    /// Ends the tracking; without effect when that is done. Waits for the calls of the customizer that events made in
    /// other threads, unless called from such a call. What the customizer throws becomes a framework event.
    void close() noexcept;

    /// Takes a bundle out; what the customizer throws becomes a framework event.
    void remove(Bundle const& bundle) noexcept;

    /// Sends a framework event for a question to which there was no answer.
    void reportUnanswered(std::exception_ptr const& thrown) const noexcept;

    /// What is tracked since the last opening; null before the first.
    std::shared_ptr<TrackedBundles> items() const;

private:
    void removeListener(ListenerToken token) const;
    void report(std::exception_ptr const& thrown) const;

    BundleContext const m_context;
    std::uint32_t const m_stateMask;

    mutable std::mutex m_mutex;              // guards m_items; held for nothing else
    std::shared_ptr<TrackedBundles> m_items; // of the last opening
};

} // namespace cppmicroservices::detail
