#pragma once

#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/FrameworkConfig.h"

#include <string>
#include <system_error>

namespace cppmicroservices {

/// A bundle's library could not be loaded; the message holds the dynamic loader's.
class US_Framework_EXPORT SharedLibraryException final : public std::system_error {
public:
    explicit SharedLibraryException(std::error_code ec, std::string what, Bundle origin);
    ~SharedLibraryException() override;

    Bundle GetBundle() const;

private:
    Bundle m_origin;
};

} // namespace cppmicroservices
