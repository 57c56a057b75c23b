#pragma once

#include "cppmicroservices/ServiceInterface.h"
#include "cppmicroservices/ServiceReference.h"

#include <memory>
#include <stdexcept>

namespace cppmicroservices {

/// Decides what a ServiceTracker keeps for a service, and is told what becomes of it.
///
/// The three functions run in the thread that causes the change, with no lock held, and several threads may call them
/// at a time.
template <class S, class T = S>
struct ServiceTrackerCustomizer {
    struct TypeTraits {
        using ServiceType = S;
        using TrackedType = T;
        using TrackedParamType = T;

        static std::shared_ptr<TrackedType> ConvertToTrackedType(std::shared_ptr<S> const&)
        {
            throw std::runtime_error("A custom ServiceTrackerCustomizer instance is required for custom tracked "
                                     "objects.");
        }
    };
    using TrackedParamType = typename TypeTraits::TrackedParamType;

    virtual ~ServiceTrackerCustomizer() = default;

    /// Makes what is to be kept for a service; null: the service is not tracked, until its next change asks again.
    virtual std::shared_ptr<TrackedParamType> AddingService(ServiceReference<S> const& reference) = 0;

    /// The properties of a tracked service have changed.
    virtual void ModifiedService(ServiceReference<S> const& reference,
                                 std::shared_ptr<TrackedParamType> const& service) = 0;

    /// The service is no longer tracked.
    virtual void RemovedService(ServiceReference<S> const& reference,
                                std::shared_ptr<TrackedParamType> const& service) = 0;
};

/// Keeps the service objects themselves.
template <class S>
struct ServiceTrackerCustomizer<S, S> {
    struct TypeTraits {
        using ServiceType = S;
        using TrackedType = S;
        using TrackedParamType = S;

        static std::shared_ptr<S> ConvertToTrackedType(std::shared_ptr<S> const& t) { return t; }
    };
    using TrackedParamType = typename TypeTraits::TrackedParamType;

    virtual ~ServiceTrackerCustomizer() = default;
    virtual std::shared_ptr<TrackedParamType> AddingService(ServiceReference<S> const& reference) = 0;
    virtual void ModifiedService(ServiceReference<S> const& reference,
                                 std::shared_ptr<TrackedParamType> const& service) = 0;
    virtual void RemovedService(ServiceReference<S> const& reference,
                                std::shared_ptr<TrackedParamType> const& service) = 0;
};

/// For services of whatever interface.
template <class T>
struct ServiceTrackerCustomizer<void, T> {
    struct TypeTraits {
        using ServiceType = void;
        using TrackedType = T;
        using TrackedParamType = T;

        static std::shared_ptr<T> ConvertToTrackedType(InterfaceMapConstPtr const&)
        {
            throw std::runtime_error("A custom ServiceTrackerCustomizer instance is required for custom tracked "
                                     "objects.");
        }
    };
    using S = void;
    using TrackedParamType = typename TypeTraits::TrackedParamType;

    virtual ~ServiceTrackerCustomizer() = default;
    virtual std::shared_ptr<TrackedParamType> AddingService(ServiceReference<S> const& reference) = 0;
    virtual void ModifiedService(ServiceReference<S> const& reference,
                                 std::shared_ptr<TrackedParamType> const& service) = 0;
    virtual void RemovedService(ServiceReference<S> const& reference,
                                std::shared_ptr<TrackedParamType> const& service) = 0;
};

/// For services of whatever interface; keeps the maps of their interfaces.
template <>
struct ServiceTrackerCustomizer<void, void> {
    struct TypeTraits {
        using ServiceType = void;
        using TrackedType = void;
        using TrackedParamType = InterfaceMap const;

        static std::shared_ptr<TrackedParamType> ConvertToTrackedType(std::shared_ptr<TrackedParamType> const& t)
        {
            return t;
        }
    };
    using S = void;
    using T = void;
    using TrackedParamType = TypeTraits::TrackedParamType;

    virtual ~ServiceTrackerCustomizer() = default;
    virtual std::shared_ptr<TrackedParamType> AddingService(ServiceReference<S> const& reference) = 0;
    virtual void ModifiedService(ServiceReference<S> const& reference,
                                 std::shared_ptr<TrackedParamType> const& service) = 0;
    virtual void RemovedService(ServiceReference<S> const& reference,
                                std::shared_ptr<TrackedParamType> const& service) = 0;
};

} // namespace cppmicroservices
