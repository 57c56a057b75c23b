#include "cppmicroservices/ServiceInterface.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>

namespace cppmicroservices::detail {

std::string GetDemangledName(std::type_info const& typeInfo)
{
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> const name(
        abi::__cxa_demangle(typeInfo.name(), nullptr, nullptr, &status), &std::free);
    return status == 0 ? name.get() : typeInfo.name();
}

} // namespace cppmicroservices::detail
