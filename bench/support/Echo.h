#pragma once

namespace bench {

/// The one interface of all services that the benchmarks register.
struct Echo {
    virtual ~Echo() = default;
};

/// Framework property (int): how many services the bundle of the benchmarks registers when it starts.
inline constexpr const char* serviceCountProperty = "bench.services";

} // namespace bench
