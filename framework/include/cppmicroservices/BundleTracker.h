#pragma once

#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/BundleEvent.h"
#include "cppmicroservices/BundleTrackerCustomizer.h"
#include "cppmicroservices/Constants.h" // sources written for this header count on it
#include "cppmicroservices/detail/BundleTracking.h"

#include <cstddef>
#include <exception>
#include <limits>
#include <memory>
#include <optional>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace cppmicroservices {

/// Keeps an object for each bundle that is in one of certain states, by default the bundle itself.
///
/// All members may be called from any thread. The customizer is called with no lock held. What it throws in a call by
/// an event becomes a framework event, and so does what it throws where a member is noexcept. A list or an object for
/// which there is no memory is given as empty, and a framework event tells of that as well.
template <class T = Bundle>
class BundleTracker : protected BundleTrackerCustomizer<T> {
public:
    using TrackingMap = typename std::unordered_map<Bundle, T>;
    using BundleStateMaskType = std::underlying_type_t<Bundle::State>;

    template <typename S0, typename... S>
    static constexpr typename BundleTracker<T>::BundleStateMaskType CreateStateMask(S0 const& s0, S const&... s)
    {
        static_assert(std::is_same_v<S0, Bundle::State> && (std::is_same_v<S, Bundle::State> && ...),
                      "A state mask is made of values of Bundle::State");
        return (static_cast<BundleStateMaskType>(s0) | ... | static_cast<BundleStateMaskType>(s));
    }

    /// @param customizer null: the tracker's own functions are called, which a subclass may override
    BundleTracker(BundleContext const& context, const BundleStateMaskType stateMask,
                  const std::shared_ptr<BundleTrackerCustomizer<T>> customizer = nullptr) noexcept
        : m_customizer(customizer), m_tracking(context, stateMask)
    {
    }

    /// Closes the tracker.
    ~BundleTracker() override { Close(); }

    /// Ends the tracking: the customizer is told that all bundles are removed. Waits for the calls of the customizer
    /// that events made in other threads, unless called from such a call.
    void Close() noexcept { m_tracking.close(); }

    /// The tracked bundles, from the last added to the first.
    std::vector<Bundle> GetBundles() const noexcept
    {
        return answer([this] {
            std::vector<Bundle> bundles;
            if (auto const items = m_tracking.items()) {
                for (auto const& entry : items->entries()) {
                    bundles.push_back(entry.item);
                }
            }
            return bundles;
        });
    }

    /// The object of a bundle; nothing when it is not tracked.
    std::optional<T> GetObject(Bundle const& bundle) const noexcept
    {
        return answer([this, &bundle] {
            auto const items = m_tracking.items();
            auto const object = items && bundle ? items->find(bundle) : nullptr;
            return object ? std::optional<T>(objectOf(object)) : std::nullopt;
        });
    }

    /// The tracked bundles and their objects.
    TrackingMap GetTracked() const noexcept
    {
        return answer([this] {
            TrackingMap tracked;
            if (auto const items = m_tracking.items()) {
                for (auto const& entry : items->entries()) {
                    tracked.emplace(entry.item, objectOf(entry.object));
                }
            }
            return tracked;
        });
    }

    /// How often a bundle was added, changed or removed since the opening; -1 when the tracker is not open.
    int GetTrackingCount() const noexcept
    {
        auto const items = m_tracking.items();
        return items ? items->count() : -1;
    }

    bool IsEmpty() const noexcept { return Size() == 0; }

    /// Begins to track; without effect on an open tracker.
    ///
    /// @throws std::runtime_error when the context is no longer valid
    /// @throws what the customizer throws for a bundle that is there already; the tracker is open then, without the
    ///         bundles that come after it
    void Open() { m_tracking.open(std::make_unique<Calls>(customizer())); }

    /// Takes a bundle out, until its next event.
    void Remove(Bundle const& bundle) noexcept { m_tracking.remove(bundle); }

    std::size_t Size() const noexcept
    {
        auto const items = m_tracking.items();
        return items ? items->size() : 0;
    }

    /// Tracks the bundle.
    ///
    /// @throws std::runtime_error when T is not Bundle
    std::optional<T> AddingBundle(Bundle const& bundle, BundleEvent const&) override
    {
        return BundleTrackerCustomizer<T>::ConvertToTrackedType(bundle);
    }

    void ModifiedBundle(Bundle const&, BundleEvent const&, T const&) override {}
    void RemovedBundle(Bundle const&, BundleEvent const&, T const&) override {}

private:
    /// Calls the customizer with the object's type.
    class Calls : public detail::TrackedBundles::Customizer {
    public:
        using Object = detail::TrackedBundles::Object;

        explicit Calls(std::shared_ptr<BundleTrackerCustomizer<T>> customizer) : m_customizer(std::move(customizer)) {}

        Object adding(Bundle const& item, BundleEvent const& event) override
        {
            std::optional<T> object = m_customizer->AddingBundle(item, event);
            if (!object) {
                return nullptr;
            }
            try {
                return std::make_shared<T const>(*object);
            } catch (...) {
                m_customizer->RemovedBundle(item, event, *object);
                throw;
            }
        }

        void modified(Bundle const& item, BundleEvent const& event, Object const& object) override
        {
            m_customizer->ModifiedBundle(item, event, objectOf(object));
        }

        void removed(Bundle const& item, BundleEvent const& event, Object const& object) override
        {
            m_customizer->RemovedBundle(item, event, objectOf(object));
        }

    private:
        std::shared_ptr<BundleTrackerCustomizer<T>> const m_customizer;
    };

    /// What the function returns, or an empty value.
    template <class Ask>
    auto answer(Ask const& ask) const noexcept -> decltype(ask())
    {
        try {
            return ask();
        } catch (...) {
            m_tracking.reportUnanswered(std::current_exception());
            return {};
        }
    }

    static T const& objectOf(detail::TrackedBundles::Object const& object)
    {
        return *static_cast<T const*>(object.get());
    }

    std::shared_ptr<BundleTrackerCustomizer<T>> customizer()
    {
        // The tracker outlives its calls to itself, and is not to be owned by them.
        return m_customizer ? m_customizer : std::shared_ptr<BundleTrackerCustomizer<T>>(std::shared_ptr<void>(), this);
    }

    std::shared_ptr<BundleTrackerCustomizer<T>> const m_customizer;
    detail::BundleTracking m_tracking;
};

} // namespace cppmicroservices
