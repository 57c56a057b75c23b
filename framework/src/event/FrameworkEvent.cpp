#include "cppmicroservices/FrameworkEvent.h"

#include "value/Reason.h"

#include <ostream>
#include <utility>

namespace cppmicroservices {

FrameworkEvent::FrameworkEvent() = default;

FrameworkEvent::FrameworkEvent(Type type, Bundle const& bundle, std::string const& message,
                               std::exception_ptr exception)
    : m_isReal(true), m_type(type), m_bundle(bundle), m_message(message), m_exception(std::move(exception))
{
}

FrameworkEvent::operator bool() const
{
    return m_isReal;
}

Bundle FrameworkEvent::GetBundle() const
{
    return m_bundle;
}

std::string FrameworkEvent::GetMessage() const
{
    return m_message;
}

std::exception_ptr FrameworkEvent::GetThrowable() const
{
    return m_exception;
}

FrameworkEvent::Type FrameworkEvent::GetType() const
{
    return m_type;
}

std::ostream& operator<<(std::ostream& os, FrameworkEvent::Type eventType)
{
    switch (eventType) {
    case FrameworkEvent::FRAMEWORK_STARTED:
        return os << "STARTED";
    case FrameworkEvent::FRAMEWORK_ERROR:
        return os << "ERROR";
    case FrameworkEvent::FRAMEWORK_WARNING:
        return os << "WARNING";
    case FrameworkEvent::FRAMEWORK_INFO:
        return os << "INFO";
    case FrameworkEvent::FRAMEWORK_STOPPED:
        return os << "STOPPED";
    case FrameworkEvent::FRAMEWORK_STOPPED_UPDATE:
        return os << "STOPPED_UPDATE";
    case FrameworkEvent::FRAMEWORK_WAIT_TIMEDOUT:
        return os << "WAIT_TIMEDOUT";
    }
    return os << "Unknown bundle event type (" << static_cast<int>(eventType) << ")";
}

std::ostream& operator<<(std::ostream& os, FrameworkEvent const& evt)
{
    if (!evt) {
        return os << "NONE";
    }
    os << evt.GetType() << "\n " << evt.GetMessage() << "\n " << evt.GetBundle() << "\n Exception: ";
    if (!evt.GetThrowable()) {
        return os << "NONE";
    }
    return os << detail::core::reasonOf(evt.GetThrowable());
}

bool operator==(FrameworkEvent const& rhs, FrameworkEvent const& lhs)
{
    return rhs.GetType() == lhs.GetType() && rhs.GetBundle() == lhs.GetBundle() &&
           rhs.GetMessage() == lhs.GetMessage() && rhs.GetThrowable() == lhs.GetThrowable() &&
           static_cast<bool>(rhs) == static_cast<bool>(lhs);
}

} // namespace cppmicroservices
