#pragma once

#include "platform/Export.h"

#include <boost/log/detail/light_rw_mutex.hpp>
#include <boost/log/sources/basic_logger.hpp>
#include <boost/log/sources/channel_feature.hpp>
#include <boost/log/sources/features.hpp>
#include <boost/log/sources/severity_feature.hpp>
#include <boost/log/sources/threading_models.hpp>

#include <atomic>
#include <cstdint>
#include <string>

namespace ostrel::platform {

/// A named Boost.Log source with a mask of enabled severities.
///
/// Records carry the attributes "Channel" (`std::string`) and "Severity" (`std::uint32_t`, exactly one bit set), by
/// which a host's sinks and filters know them. The mask is read before a record is opened, so that a masked record
/// costs one atomic load; after it the core decides as for any other source.
///
/// @locks  its own reader-writer lock (a `pthread_rwlock_t`), exclusively, while a record is opened; none while the
///         message is composed or pushed. The mask is atomic.
class OSTREL_EXPORT DiagnosticLogger final
    : public boost::log::sources::basic_composite_logger<
          char, DiagnosticLogger, boost::log::sources::multi_thread_model<boost::log::aux::light_rw_mutex>,
          boost::log::sources::features<boost::log::sources::severity<std::uint32_t>,
                                        boost::log::sources::channel<std::string>>> {
public:
    /// Every severity is enabled at first.
    explicit DiagnosticLogger(const std::string& channel);

    DiagnosticLogger(const DiagnosticLogger&) = delete;
    DiagnosticLogger& operator=(const DiagnosticLogger&) = delete;
    ~DiagnosticLogger();

    /// One bit per severity; a record is attempted only if its bit is set.
    /// @locks none
    std::uint32_t enabledSeverities() const;

    /// Takes effect for the next record of any thread.
    /// @locks none
    void setEnabledSeverities(std::uint32_t mask);

private:
    std::atomic<std::uint32_t> m_enabledSeverities{~std::uint32_t{0}};
};

} // namespace ostrel::platform
