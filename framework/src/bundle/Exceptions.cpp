#include "cppmicroservices/SecurityException.h"
#include "cppmicroservices/SharedLibraryException.h"

#include <utility>

namespace cppmicroservices {

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature that hosts compile against
SecurityException::SecurityException(std::string what, Bundle origin)
    : std::runtime_error(what), m_origin(std::move(origin))
{
}

SecurityException::~SecurityException() = default;

Bundle SecurityException::GetBundle() const
{
    return m_origin;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): as above
SharedLibraryException::SharedLibraryException(std::error_code ec, std::string what, Bundle origin)
    : std::system_error(ec, what), m_origin(std::move(origin))
{
}

SharedLibraryException::~SharedLibraryException() = default;

Bundle SharedLibraryException::GetBundle() const
{
    return m_origin;
}

} // namespace cppmicroservices
