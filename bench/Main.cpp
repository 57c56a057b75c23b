#include "support/RatioReporter.h"

#include <benchmark/benchmark.h>
#include <boost/log/core.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/make_shared.hpp>

namespace {

/// Takes every record and drops it, so that records cost what Boost.Log makes them cost and no terminal is measured.
class DroppingBackend final : public boost::log::sinks::basic_sink_backend<boost::log::sinks::synchronized_feeding> {
public:
    void consume(const boost::log::record_view&) {}
};

} // namespace

int main(int argc, char** argv)
{
    boost::log::core::get()->add_sink(boost::make_shared<boost::log::sinks::synchronous_sink<DroppingBackend>>());
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    return 0;
}
