#include "value/TypeName.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <new>

namespace cppmicroservices::detail {

std::string typeName(std::type_info const& type)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name{abi::__cxa_demangle(type.name(), nullptr, nullptr, &status),
                                                           &std::free};
    constexpr int noMemory = -1;
    if (status == noMemory) {
        throw std::bad_alloc(); // a class would else be known by another name for good
    }
    return name ? name.get() : type.name();
}

} // namespace cppmicroservices::detail
