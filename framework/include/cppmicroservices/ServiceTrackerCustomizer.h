#pragma once

#include "cppmicroservices/ServiceInterface.h"
#include "cppmicroservices/ServiceReference.h"

#include <memory>
#include <stdexcept>

namespace cppmicroservices {

namespace detail {

/// What a service tracker asks and tells its customizer, for services of the interface S and objects of the type
/// Object.
template <class S, class Object>
struct ServiceTrackerCalls {
    virtual ~ServiceTrackerCalls() = default;

    /// Makes what is to be kept for a service; null: the service is not tracked, until its next change asks again.
    virtual std::shared_ptr<Object> AddingService(ServiceReference<S> const& reference) = 0;

    /// The properties of a tracked service have changed.
    virtual void ModifiedService(ServiceReference<S> const& reference, std::shared_ptr<Object> const& service) = 0;

    /// The service is no longer tracked.
    virtual void RemovedService(ServiceReference<S> const& reference, std::shared_ptr<Object> const& service) = 0;
};

} // namespace detail

/// Decides what a ServiceTracker keeps for a service, and is told what becomes of it.
///
/// The three functions run in the thread that causes the change, with no lock held, and several threads may call them
/// at a time.
template <class S, class T = S>
struct ServiceTrackerCustomizer : detail::ServiceTrackerCalls<S, T> {
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
};

/// Keeps the service objects themselves.
template <class S>
struct ServiceTrackerCustomizer<S, S> : detail::ServiceTrackerCalls<S, S> {
    struct TypeTraits {
        using ServiceType = S;
        using TrackedType = S;
        using TrackedParamType = S;

        static std::shared_ptr<S> ConvertToTrackedType(std::shared_ptr<S> const& t) { return t; }
    };
    using TrackedParamType = typename TypeTraits::TrackedParamType;
};

/// For services of whatever interface.
template <class T>
struct ServiceTrackerCustomizer<void, T> : detail::ServiceTrackerCalls<void, T> {
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
    using TrackedParamType = typename TypeTraits::TrackedParamType;
};

/// For services of whatever interface; keeps the maps of their interfaces.
template <>
struct ServiceTrackerCustomizer<void, void> : detail::ServiceTrackerCalls<void, InterfaceMap const> {
    struct TypeTraits {
        using ServiceType = void;
        using TrackedType = void;
        using TrackedParamType = InterfaceMap const;

        static std::shared_ptr<TrackedParamType> ConvertToTrackedType(std::shared_ptr<TrackedParamType> const& t)
        {
            return t;
        }
    };
    using TrackedParamType = TypeTraits::TrackedParamType;
};

} // namespace cppmicroservices
