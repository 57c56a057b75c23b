#include "value/TypeName.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>

namespace cppmicroservices::detail {

std::string typeName(std::type_info const& type)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name{abi::__cxa_demangle(type.name(), nullptr, nullptr, &status),
                                                           &std::free};
    return status == 0 && name ? name.get() : type.name();
}

} // namespace cppmicroservices::detail
