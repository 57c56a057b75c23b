#pragma once

#include <cppmicroservices/ServiceInterface.h>

namespace contract {

struct Plain {
    virtual ~Plain() = default;
    virtual int number() const { return 1; }
};

struct Named {
    virtual ~Named() = default;
};

struct Both : Plain, Named {};

} // namespace contract

CPPMICROSERVICES_DECLARE_SERVICE_INTERFACE(contract::Named, "my.named")
