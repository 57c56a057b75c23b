#pragma once

namespace bench {

/// The interface of the services that the benchmarks register.
struct Thing {
    virtual ~Thing() = default;
    virtual int number() const = 0;
};

} // namespace bench
