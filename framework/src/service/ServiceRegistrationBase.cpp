#include "cppmicroservices/ServiceRegistrationBase.h"

#include "service/ServiceRegistry.h"

#include <functional>
#include <ostream>
#include <stdexcept>
#include <utility>

namespace cppmicroservices {

namespace {

detail::core::ServiceRegistry& registryOf(std::shared_ptr<detail::core::ServiceRecord> const& record)
{
    if (!record) {
        throw std::logic_error("ServiceRegistrationBase object invalid");
    }
    return record->registry();
}

} // namespace

ServiceRegistrationBase::ServiceRegistrationBase() = default;

ServiceRegistrationBase::ServiceRegistrationBase(std::shared_ptr<detail::core::ServiceRecord> record)
    : m_record(std::move(record))
{
}

ServiceRegistrationBase::ServiceRegistrationBase(ServiceRegistrationBase const& other) = default;
ServiceRegistrationBase::ServiceRegistrationBase(ServiceRegistrationBase&& other) noexcept = default;
ServiceRegistrationBase& ServiceRegistrationBase::operator=(ServiceRegistrationBase const& other) = default;
ServiceRegistrationBase& ServiceRegistrationBase::operator=(ServiceRegistrationBase&& other) noexcept = default;
ServiceRegistrationBase::~ServiceRegistrationBase() = default;

ServiceRegistrationBase& ServiceRegistrationBase::operator=(std::nullptr_t)
{
    m_record.reset();
    return *this;
}

ServiceRegistrationBase::operator bool() const
{
    return m_record != nullptr;
}

ServiceReferenceBase ServiceRegistrationBase::GetReference(std::string const& interfaceId) const
{
    registryOf(m_record).requireRegistered(*m_record);
    return ServiceReferenceBase(
        std::make_shared<detail::core::ReferenceData const>(detail::core::ReferenceData{m_record, interfaceId}));
}

// These take a copy along, as a listener or the destructor of the service may well clear this handle.

void ServiceRegistrationBase::SetProperties(ServiceProperties const& properties)
{
    auto const record = m_record;
    registryOf(record).changeProperties(record, properties);
}

void ServiceRegistrationBase::SetProperties(ServiceProperties&& properties)
{
    auto const record = m_record;
    registryOf(record).changeProperties(record, properties);
}

void ServiceRegistrationBase::Unregister()
{
    auto const record = m_record;
    registryOf(record).remove(record);
}

bool ServiceRegistrationBase::operator<(ServiceRegistrationBase const& other) const
{
    return std::less<detail::core::ServiceRecord const*>()(m_record.get(), other.m_record.get());
}

bool ServiceRegistrationBase::operator==(ServiceRegistrationBase const& other) const
{
    return m_record == other.m_record;
}

std::size_t ServiceRegistrationBase::Hash() const
{
    return std::hash<detail::core::ServiceRecord const*>()(m_record.get());
}

std::ostream& operator<<(std::ostream& os, ServiceRegistrationBase const& /*reg*/)
{
    return os << "cppmicroservices::ServiceRegistrationBase object";
}

} // namespace cppmicroservices
