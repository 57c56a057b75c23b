#include "service/ServiceRecord.h"

#include <algorithm>

namespace cppmicroservices::detail::core {

ServiceRecord::ServiceRecord(std::shared_ptr<ServiceRegistry> registry, std::shared_ptr<BundleRecord> owner, long id,
                             std::vector<std::string> classes)
    : m_registry(std::move(registry)), m_owner(std::move(owner)), m_id(id), m_classes(std::move(classes))
{
}

bool ServiceRecord::hasClass(std::string const& name) const
{
    return std::find(m_classes.begin(), m_classes.end(), name) != m_classes.end();
}

} // namespace cppmicroservices::detail::core
