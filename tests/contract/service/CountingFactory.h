#pragma once

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/ServiceFactory.h>

#include <functional>
#include <stdexcept>
#include <utility>

namespace contract {

/// A service factory that makes objects as it is told and counts them.
template <class Base>
class CountingFactory : public Base {
public:
    using Make = std::function<cppmicroservices::InterfaceMapConstPtr()>;

    explicit CountingFactory(Make theMake) : make(std::move(theMake)) {}

    cppmicroservices::InterfaceMapConstPtr GetService(cppmicroservices::Bundle const&,
                                                      cppmicroservices::ServiceRegistrationBase const&) override
    {
        ++made;
        return make();
    }

    void UngetService(cppmicroservices::Bundle const&, cppmicroservices::ServiceRegistrationBase const&,
                      cppmicroservices::InterfaceMapConstPtr const&) override
    {
        ++taken;
        if (failsToTake) {
            throw std::runtime_error("taking");
        }
    }

    Make make;
    int made = 0;
    int taken = 0;
    bool failsToTake = false;
};

} // namespace contract
