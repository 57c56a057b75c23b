#include "cppmicroservices/ServiceInterface.h"

#include "value/TypeName.h"

namespace cppmicroservices::detail {

std::string GetDemangledName(std::type_info const& typeInfo)
{
    return typeName(typeInfo);
}

} // namespace cppmicroservices::detail
