// One program that measures a framework through its public headers. It is built against either framework; what the two
// builds write with --benchmark_out is compared by ostrel_bench_compare.

#include "support/Services.h"

#include <benchmark/benchmark.h>

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::AddCustomContext("framework", BENCH_FRAMEWORK);
    benchmark::RunSpecifiedBenchmarks();
    bench::removeAllServices();
    return 0;
}
