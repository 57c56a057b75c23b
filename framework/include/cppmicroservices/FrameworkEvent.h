#pragma once

#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/FrameworkExport.h"

#include <cstdint>
#include <exception>
#include <iostream>
#include <string>

namespace cppmicroservices {

/// Something that happened in a framework; also what Framework::WaitForStop() returns.
class US_Framework_EXPORT FrameworkEvent {
public:
    enum Type : std::uint32_t {
        FRAMEWORK_STARTED = 0x00000001,
        FRAMEWORK_ERROR = 0x00000002,
        FRAMEWORK_WARNING = 0x00000010,
        FRAMEWORK_INFO = 0x00000020,
        FRAMEWORK_STOPPED = 0x00000040,
        FRAMEWORK_STOPPED_UPDATE = 0x00000080,
        FRAMEWORK_WAIT_TIMEDOUT = 0x00000200,
    };

    /// An event that is false: of type FRAMEWORK_ERROR, without bundle, message and exception.
    FrameworkEvent();
    FrameworkEvent(Type type, Bundle const& bundle, std::string const& message,
                   std::exception_ptr const exception = nullptr);

    explicit operator bool() const;

    Bundle GetBundle() const;
    std::string GetMessage() const;

    /// The exception that the event is about, or null.
    std::exception_ptr GetThrowable() const;
    Type GetType() const;

private:
    // Here and not behind a pointer, so that a stop can be told of when memory is short as well.
    bool m_isReal = false;
    Type m_type = FRAMEWORK_ERROR;
    Bundle m_bundle;
    std::string m_message;
    std::exception_ptr m_exception;
};

US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, FrameworkEvent::Type eventType);
US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, FrameworkEvent const& evt);

/// Equal when copies of one event, or when type, bundle, message and exception are the same.
US_Framework_EXPORT bool operator==(FrameworkEvent const& rhs, FrameworkEvent const& lhs);

} // namespace cppmicroservices
