#pragma once

#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/FrameworkConfig.h"

#include <stdexcept>
#include <string>

namespace cppmicroservices {

/// The framework's validation function refused to let a bundle start.
class US_Framework_EXPORT SecurityException final : public std::runtime_error {
public:
    explicit SecurityException(std::string what, Bundle origin);
    ~SecurityException() override;

    Bundle GetBundle() const;

private:
    Bundle m_origin;
};

} // namespace cppmicroservices
