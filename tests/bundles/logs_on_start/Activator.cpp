#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>

#include <boost/log/sources/record_ostream.hpp>
#include <boost/log/sources/severity_channel_logger.hpp>

#include <cstdint>
#include <string>

namespace {

/// Writes a record of its own, under the container's channel so that it lines up with the container's records.
class LogsOnStart final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext) override
    {
        namespace keywords = boost::log::keywords;
        boost::log::sources::severity_channel_logger<std::uint32_t, std::string> log{keywords::channel =
                                                                                         "ostrel::us_container"};
        BOOST_LOG_SEV(log, std::uint32_t{0x1}) << "logs_on_start: started";
    }

    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(LogsOnStart)
