#include "cppmicroservices/ServiceException.h"

#include <ostream>

namespace cppmicroservices {

ServiceException::ServiceException(std::string const& msg, Type const& type) : std::runtime_error(msg), m_type(type) {}
ServiceException::ServiceException(ServiceException const& o) = default;
ServiceException& ServiceException::operator=(ServiceException const& o) = default;
ServiceException::~ServiceException() = default;

ServiceException::Type ServiceException::GetType() const
{
    return m_type;
}

} // namespace cppmicroservices

std::ostream& operator<<(std::ostream& os, cppmicroservices::ServiceException const& exc)
{
    return os << "ServiceException: " << exc.what();
}
