#include "container/DiagnosticLog.h"

#include <boost/log/core/record.hpp>
#include <boost/log/keywords/severity.hpp>
#include <boost/log/sources/record_ostream.hpp>

#include <cstdint>

namespace ostrel::us_container {

namespace {

/// Opens a record and drops it.
///
/// Boost.Log makes much of itself at the first record, and at exit that goes before all static objects that are older.
/// Made while the library is loaded, it goes after those of a host, whose destructors may write records: a container's
/// does so when a bundle fails to stop.
bool madeReady()
{
    using Streams = boost::log::aux::stream_provider<char>;
    ostrel::platform::DiagnosticLogger source{"ostrel::us_container"};
    if (boost::log::record dropped = source.open_record(boost::log::keywords::severity = std::uint32_t{0x200})) {
        Streams::release_compound(Streams::allocate_compound(dropped));
    }
    return true;
}

[[maybe_unused]] const bool isReady = madeReady(); // defined before the source, so that it runs before that is made

// At namespace scope, not in the function: the source exists before any host code runs and goes at exit.
ostrel::platform::DiagnosticLogger logSource{"ostrel::us_container"};

} // namespace

ostrel::platform::DiagnosticLogger& diagnosticLog()
{
    return logSource;
}

} // namespace ostrel::us_container
