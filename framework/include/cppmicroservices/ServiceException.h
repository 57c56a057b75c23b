#pragma once

#include "cppmicroservices/FrameworkConfig.h"

#include <iosfwd>
#include <stdexcept>
#include <string>

namespace cppmicroservices {

/// Something went wrong between a service's provider and its user; GetType() tells what.
class US_Framework_EXPORT ServiceException : public std::runtime_error {
public:
    enum Type {
        UNSPECIFIED = 0,       ///< none of the following
        UNREGISTERED = 1,      ///< the service is no longer registered
        FACTORY_ERROR = 2,     ///< a factory returned null or an object without the registered interfaces
        FACTORY_EXCEPTION = 3, ///< a factory threw
        REMOTE = 5,            ///< a remote service failed
        FACTORY_RECURSION = 6, ///< a factory asked, while it made a service, for that same service
    };

    ServiceException(std::string const& msg, Type const& type = UNSPECIFIED);
    ServiceException(ServiceException const& o);
    ServiceException& operator=(ServiceException const& o);
    ~ServiceException() override;

    Type GetType() const;

private:
    Type m_type;
};

} // namespace cppmicroservices

/// Writes "ServiceException: " and the message.
US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, cppmicroservices::ServiceException const& exc);
