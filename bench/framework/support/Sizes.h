#pragma once

#include <benchmark/benchmark.h>

namespace bench {

/// The numbers of services at which everything is measured that may depend on them.
inline void atAllSizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(10)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
}

} // namespace bench
