#include "library/ActivatorSymbols.h"

#include "cppmicroservices/GlobalConfig.h"

namespace cppmicroservices::detail::core {

ActivatorSymbols ActivatorSymbols::of(SharedLibrary const& library, std::string const& bundleName)
{
    ActivatorSymbols found;
    found.create = reinterpret_cast<Create>(library.symbol(US_STR(US_CREATE_ACTIVATOR_PREFIX) + bundleName));
    found.destroy = reinterpret_cast<Destroy>(library.symbol(US_STR(US_DESTROY_ACTIVATOR_PREFIX) + bundleName));
    found.setContext = reinterpret_cast<SetContext>(library.symbol(US_STR(US_SET_CTX_PREFIX) + bundleName));
    return found;
}

} // namespace cppmicroservices::detail::core
