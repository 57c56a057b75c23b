#include "platform/DiagnosticLogger.h"

#include <boost/log/keywords/channel.hpp>

namespace ostrel::platform {

DiagnosticLogger::DiagnosticLogger(const std::string& channel) : logger_base(boost::log::keywords::channel = channel) {}

DiagnosticLogger::~DiagnosticLogger() = default;

std::uint32_t DiagnosticLogger::enabledSeverities() const
{
    return m_enabledSeverities.load(std::memory_order_relaxed);
}

void DiagnosticLogger::setEnabledSeverities(std::uint32_t mask)
{
    m_enabledSeverities.store(mask, std::memory_order_relaxed);
}

} // namespace ostrel::platform
