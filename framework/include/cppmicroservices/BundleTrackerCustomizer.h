#pragma once

#include "cppmicroservices/Bundle.h"

#include <optional>
#include <stdexcept>
#include <type_traits>

namespace cppmicroservices {

class BundleEvent;

/// Decides what a BundleTracker keeps for a bundle, and is told what becomes of it.
///
/// The three functions run in the thread that causes the change, with no lock held, and several threads may call them
/// at a time. The event is a false one where no event is the cause: when the tracker is opened or closed, or is told to
/// remove a bundle.
template <class T = Bundle>
struct BundleTrackerCustomizer {
    static T ConvertToTrackedType(Bundle const& b)
    {
        if constexpr (std::is_same_v<T, Bundle>) {
            return b;
        } else {
            throw std::runtime_error("A custom BundleTrackerCustomizer instance is required for custom tracked "
                                     "objects.");
        }
    }

    virtual ~BundleTrackerCustomizer() = default;

    /// Makes what is to be kept for a bundle that comes into one of the states; nothing: the bundle is not tracked,
    /// until its next event asks again.
    virtual std::optional<T> AddingBundle(Bundle const& bundle, BundleEvent const& event) = 0;

    /// A tracked bundle has gone from one of the states to another one.
    virtual void ModifiedBundle(Bundle const& bundle, BundleEvent const& event, T const& object) = 0;

    /// The bundle is no longer tracked.
    virtual void RemovedBundle(Bundle const& bundle, BundleEvent const& event, T const& object) = 0;
};

} // namespace cppmicroservices
