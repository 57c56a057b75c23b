#include "cppmicroservices/detail/BundleTracking.h"

#include "tracker/TrackerFailure.h"
#include "value/Reason.h"

#include <algorithm>
#include <exception>
#include <new>
#include <stdexcept>
#include <utility>

namespace cppmicroservices::detail {

BundleTracking::BundleTracking(BundleContext context, std::uint32_t stateMask) noexcept
    : m_context(std::move(context)), m_stateMask(stateMask)
{
}

void BundleTracking::open(std::unique_ptr<TrackedBundles::Customizer> customizer)
{
    auto const items = std::make_shared<TrackedBundles>(std::move(customizer));
    std::shared_ptr<TrackedBundles> former; // goes after the lock, with its customizer
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        if (m_items && !m_items->isClosed()) {
            return;
        }
        former = std::exchange(m_items, items);
    }
    std::vector<Bundle> initial;
    try {
        BundleContext context = m_context;
        auto token = context.AddBundleListener([items, mask = m_stateMask](BundleEvent const& event) {
            if (event.GetType() == BundleEvent::BUNDLE_UNRESOLVED) {
                return; // a step on the way to UNINSTALLED, whose event is the one that counts
            }
            auto const bundle = event.GetBundle();
            if ((bundle.GetState() & mask) != 0) {
                items->onCame(bundle, event);
            } else {
                items->onWent(bundle, event);
            }
        });
        if (!items->keepListener(token)) {
            removeListener(std::move(token)); // closed by another thread in the meantime
            return;
        }
        initial = context.GetBundles();
        initial.erase(std::remove_if(initial.begin(), initial.end(),
                                     [this](Bundle const& bundle) { return (bundle.GetState() & m_stateMask) == 0; }),
                      initial.end());
    } catch (...) {
        items->close();
        removeListener(items->takeListener());
        throw;
    }
    try {
        items->addInitial(std::move(initial));
    } catch (std::bad_alloc const&) {
        close(); // so that it can be opened once more
        throw;
    }
}

void BundleTracking::close() noexcept
{
    report(core::caughtFrom([this] {
        auto const open = items();
        if (!open || !open->close()) {
            return;
        }
        removeListener(open->takeListener());
        open->awaitListener();
        open->removeAll(BundleEvent());
    }));
}

void BundleTracking::remove(Bundle const& bundle) noexcept
{
    auto const open = items();
    if (!open || !bundle) {
        return;
    }
    report(core::caughtFrom([&] { open->remove(bundle, BundleEvent()); }));
}

void BundleTracking::report(std::exception_ptr const& thrown) const
{
    if (thrown) {
        core::reportTrackerFailure(m_context, "Bundle tracker customizer threw an exception", thrown);
    }
}

void BundleTracking::reportUnanswered(std::exception_ptr const& thrown) const noexcept
{
    core::reportTrackerFailure(m_context, "Bundle tracker cannot tell what it tracks", thrown);
}

void BundleTracking::removeListener(ListenerToken token) const
{
    try {
        BundleContext context = m_context;
        context.RemoveListener(std::move(token));
    } catch (std::exception const&) {
        // The bundle has stopped, and its listeners with it. Nothing else goes wrong here.
    }
}

std::shared_ptr<TrackedBundles> BundleTracking::items() const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_items;
}

} // namespace cppmicroservices::detail
