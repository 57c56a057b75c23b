#include "cppmicroservices/FrameworkEvent.h"

#include "value/Reason.h"

#include "cppmicroservices/Bundle.h"

#include <ostream>
#include <utility>

namespace cppmicroservices {

class FrameworkEventData {
public:
    FrameworkEvent::Type type;
    Bundle bundle;
    std::string message;
    std::exception_ptr exception;
};

FrameworkEvent::FrameworkEvent() = default;

FrameworkEvent::FrameworkEvent(Type type, Bundle const& bundle, std::string const& message,
                               std::exception_ptr exception)
    : m_data(std::make_shared<FrameworkEventData>(FrameworkEventData{type, bundle, message, std::move(exception)}))
{
}

FrameworkEvent::operator bool() const
{
    return m_data != nullptr;
}

Bundle FrameworkEvent::GetBundle() const
{
    return m_data ? m_data->bundle : Bundle();
}

std::string FrameworkEvent::GetMessage() const
{
    return m_data ? m_data->message : std::string();
}

std::exception_ptr FrameworkEvent::GetThrowable() const
{
    return m_data ? m_data->exception : nullptr;
}

FrameworkEvent::Type FrameworkEvent::GetType() const
{
    return m_data ? m_data->type : FRAMEWORK_ERROR;
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
