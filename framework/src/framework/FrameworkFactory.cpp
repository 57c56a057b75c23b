#include "cppmicroservices/FrameworkFactory.h"

#include "framework/FrameworkCore.h"
#include "framework/HandleAccess.h"

#include "cppmicroservices/Framework.h"

namespace cppmicroservices {

Framework FrameworkFactory::NewFramework(FrameworkConfiguration const& configuration, std::ostream* logger)
{
    auto hold = detail::core::FrameworkCore::make(configuration, logger);
    auto record = hold->core()->systemBundle();
    return detail::core::HandleAccess::framework(std::move(record), std::move(hold));
}

Framework FrameworkFactory::NewFramework()
{
    return NewFramework(FrameworkConfiguration());
}

Framework FrameworkFactory::NewFramework(std::map<std::string, Any> const& configuration, std::ostream* logger)
{
    return NewFramework(FrameworkConfiguration(configuration.begin(), configuration.end()), logger);
}

} // namespace cppmicroservices
