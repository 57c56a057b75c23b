#include "cppmicroservices/ServiceReferenceBase.h"

#include "bundle/BundleRecord.h"
#include "framework/HandleAccess.h"
#include "ldap/PropertyTable.h"
#include "service/ReferenceProperties.h"
#include "service/ServiceRegistry.h"

#include <ostream>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace cppmicroservices {

namespace detail::core {

std::shared_ptr<detail::ldap::PropertyTable const> propertiesOf(ServiceReferenceBase const& reference)
{
    auto const& data = HandleAccess::data(reference);
    if (!data) {
        throw std::logic_error("A default constructed ServiceReference has no properties");
    }
    return data->record->registry().properties(*data->record);
}

} // namespace detail::core

ServiceReferenceBase::ServiceReferenceBase() = default;

ServiceReferenceBase::ServiceReferenceBase(std::shared_ptr<detail::core::ReferenceData const> data)
    : m_data(std::move(data))
{
}

ServiceReferenceBase::ServiceReferenceBase(ServiceReferenceBase const& other) = default;
ServiceReferenceBase& ServiceReferenceBase::operator=(ServiceReferenceBase const& other) = default;
ServiceReferenceBase::~ServiceReferenceBase() = default;

ServiceReferenceBase& ServiceReferenceBase::operator=(std::nullptr_t)
{
    m_data.reset();
    return *this;
}

ServiceReferenceBase::operator bool() const
{
    return m_data && m_data->record->registry().isRegistered(*m_data->record);
}

Any ServiceReferenceBase::GetProperty(std::string const& key) const
{
    auto const properties = detail::core::propertiesOf(*this);
    auto const* const found = properties->find(key);
    return found != nullptr ? *found : Any();
}

std::vector<std::string> ServiceReferenceBase::GetPropertyKeys() const
{
    std::vector<std::string> keys;
    auto const properties = detail::core::propertiesOf(*this);
    keys.reserve(properties->map().size());
    for (auto const& entry : properties->map()) {
        keys.push_back(entry.first);
    }
    return keys;
}

void ServiceReferenceBase::GetPropertyKeys(std::vector<std::string>& keys) const
{
    keys = GetPropertyKeys();
}

Bundle ServiceReferenceBase::GetBundle() const
{
    return *this ? detail::core::HandleAccess::bundle(m_data->record->owner()) : Bundle();
}

std::vector<Bundle> ServiceReferenceBase::GetUsingBundles() const
{
    if (!m_data) {
        throw std::system_error(std::make_error_code(std::errc::operation_not_permitted));
    }
    std::vector<Bundle> result;
    for (auto& user : m_data->record->registry().users(*m_data->record)) {
        result.push_back(detail::core::HandleAccess::bundle(std::move(user)));
    }
    return result;
}

std::string ServiceReferenceBase::GetInterfaceId() const
{
    return m_data ? m_data->interfaceId : std::string();
}

bool ServiceReferenceBase::IsConvertibleTo(std::string const& interfaceid) const
{
    return *this && m_data->record->hasClass(interfaceid);
}

bool ServiceReferenceBase::operator<(ServiceReferenceBase const& reference) const
{
    if (!m_data || !reference.m_data) {
        return !m_data && reference.m_data;
    }
    auto const& mine = *m_data->record;
    auto const& other = *reference.m_data->record;
    // Better services come first in a class, and are the greater ones here.
    return other.registry().rank(other) < mine.registry().rank(mine);
}

bool ServiceReferenceBase::operator==(ServiceReferenceBase const& reference) const
{
    return (m_data ? m_data->record : nullptr) == (reference.m_data ? reference.m_data->record : nullptr);
}

void ServiceReferenceBase::narrowTo(std::string const& interfaceId)
{
    if (!m_data || m_data->interfaceId == interfaceId) {
        return;
    }
    if (!IsConvertibleTo(interfaceId)) {
        m_data.reset();
        return;
    }
    m_data =
        std::make_shared<detail::core::ReferenceData const>(detail::core::ReferenceData{m_data->record, interfaceId});
}

std::size_t ServiceReferenceBase::Hash() const
{
    return m_data ? std::hash<detail::core::ServiceRecord const*>()(m_data->record.get()) : 0;
}

std::ostream& operator<<(std::ostream& os, ServiceReferenceBase const& serviceRef)
{
    if (!serviceRef) {
        return os << "Invalid service reference";
    }
    auto const& owner = *detail::core::HandleAccess::data(serviceRef)->record->owner();
    os << "Reference for service object registered from " << owner.name() << ' ' << owner.version() << " (";
    auto const properties = detail::core::propertiesOf(serviceRef);
    char const* separator = "";
    for (auto const& [key, value] : properties->map()) {
        os << separator << key << '=' << value.ToStringNoExcept();
        separator = ",";
    }
    return os << ')';
}

} // namespace cppmicroservices
