#include "service/ServiceRegistry.h"

#include "bundle/BundleContextPrivate.h"
#include "bundle/BundleRecord.h"
#include "event/Events.h"
#include "service/PropertyRules.h"

#include "cppmicroservices/Constants.h"
#include "cppmicroservices/PrototypeServiceFactory.h"

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <utility>

namespace cppmicroservices::detail::core {

namespace {

constexpr char const* factoryKey = "org.cppmicroservices.factory";

/// Ids are drawn per process, so that no two services of whatever framework share one.
long nextServiceId()
{
    static std::atomic<long> last{0};
    return ++last;
}

void checkObject(InterfaceMapConstPtr const& object)
{
    if (!object || object->empty()) {
        throw std::invalid_argument("Can't register empty InterfaceMap as a service");
    }
    bool const isFactory = object->count(factoryKey) != 0;
    for (auto const& [name, part] : *object) {
        bool const mayBeNull = isFactory && name != factoryKey; // the factory makes the objects later
        if (name.empty() || (!part && !mayBeNull)) {
            throw std::invalid_argument("Can't register as null class");
        }
    }
}

std::shared_ptr<ServiceFactory> factoryIn(InterfaceMap const& object)
{
    auto const found = object.find(factoryKey);
    return found != object.end() ? std::static_pointer_cast<ServiceFactory>(found->second) : nullptr;
}

std::string const& scopeOf(std::shared_ptr<ServiceFactory> const& factory)
{
    if (!factory) {
        return Constants::SCOPE_SINGLETON;
    }
    bool const prototype = dynamic_cast<PrototypeServiceFactory*>(factory.get()) != nullptr;
    return prototype ? Constants::SCOPE_PROTOTYPE : Constants::SCOPE_BUNDLE;
}

std::vector<std::string> namesIn(InterfaceMap const& object)
{
    std::vector<std::string> names;
    names.reserve(object.size());
    for (auto const& entry : object) {
        names.push_back(entry.first);
    }
    return names;
}

} // namespace

ServiceRegistry::ServiceRegistry(std::shared_ptr<Events> events) : m_events(std::move(events)) {}

std::shared_ptr<ServiceRecord> ServiceRegistry::add(BundleContextPrivate const& context,
                                                    InterfaceMapConstPtr const& object,
                                                    ServiceProperties const& properties)
{
    auto const owner = context.bundle();
    checkObject(object);
    auto const factory = factoryIn(*object);
    auto const names = namesIn(*object);
    long const id = nextServiceId();
    auto const described = propertiesAtRegistration(properties, id, names, scopeOf(factory));

    auto record = std::make_shared<ServiceRecord>(shared_from_this(), owner, id, names);
    if (factory) {
        record->m_factory = factory; // alone: its owner may count who holds it
    } else {
        record->m_object = object;
    }
    record->m_properties = described.all;
    record->m_ranking = described.ranking;
    record->m_shownId = described.shownId;
    Reference untyped;
    {
        ServiceIndex::Outdated outdated;
        std::lock_guard<std::mutex> const lock(m_mutex);
        if (m_closed || !owner || !context.mayRegister()) {
            throw std::runtime_error("The bundle context is no longer valid");
        }
        untyped = m_index.add(record, rankOf(*record), outdated);
    }
    m_events->publish(ServiceEvent::SERVICE_REGISTERED, untyped, described.all);
    return record;
}

void ServiceRegistry::changeProperties(std::shared_ptr<ServiceRecord> const& record,
                                       ServiceProperties const& properties)
{
    Reference untyped;
    ServiceRecord::Properties old;
    ServiceRecord::Properties all;
    for (;;) {
        requireRegistered(*record);
        old = this->properties(*record);
        auto const replaced = propertiesReplaced(properties, old->map());
        all = replaced.all;

        ServiceIndex::Outdated outdated;
        std::lock_guard<std::mutex> const lock(m_mutex);
        if (record->m_properties != old) {
            continue; // another thread was faster; what it set is replaced as well
        }
        untyped = untypedReference(record);
        auto const from = rankOf(*record);
        record->m_properties = all; // `old` still holds the former ones: they go after the lock
        record->m_ranking = replaced.ranking;
        if (record->m_state == ServiceRecord::State::registered) {
            m_index.change(*record, from, rankOf(*record), outdated);
        }
        break;
    }
    m_events->publishModified(untyped, all, old);
}

void ServiceRegistry::remove(std::shared_ptr<ServiceRecord> const& record)
{
    if (!tryRemove(record)) {
        throw std::logic_error("Service is unregistered");
    }
}

bool ServiceRegistry::tryRemove(std::shared_ptr<ServiceRecord> const& record)
{
    Reference untyped;
    {
        ServiceIndex::Outdated outdated;
        std::lock_guard<std::mutex> const lock(m_mutex);
        bool const isUnderWay = record->m_state == ServiceRecord::State::unregistering;
        if (isUnderWay && record->m_unregisteringBy == std::this_thread::get_id()) {
            return true; // a listener is told of it, and asks for it once more
        }
        if (record->m_state != ServiceRecord::State::registered) {
            return false;
        }
        untyped = untypedReference(record);
        record->m_state = ServiceRecord::State::unregistering;
        record->m_unregisteringBy = std::this_thread::get_id();
        m_index.remove(*record, rankOf(*record), outdated);
    }
    m_events->publish(ServiceEvent::SERVICE_UNREGISTERING, untyped, this->properties(*record));

    InterfaceMapConstPtr object;
    std::shared_ptr<ServiceFactory> factory;
    std::unordered_map<BundleRecord const*, BundleUses> uses;
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        record->m_state = ServiceRecord::State::unregistered;
        object.swap(record->m_object);
        factory.swap(record->m_factory);
        uses.swap(record->m_uses);
        for (auto const& [user, ofUser] : uses) {
            if (ofUser.shared) {
                ofUser.shared->over = true;
            }
            for (auto const& use : ofUser.own) {
                use->over = true;
            }
            m_index.removeUse(*user, *record);
        }
    }
    if (!factory) {
        return true;
    }
    for (auto const& entry : uses) {
        auto const& ofUser = entry.second;
        for (auto const& use : ofUser.own) {
            giveBack(*factory, record, *use, Reason::unregistered);
        }
        if (ofUser.shared && ofUser.shared->object) {
            giveBack(*factory, record, *ofUser.shared, Reason::unregistered);
        }
    }
    return true;
}

void ServiceRegistry::endRegistrations(BundleContextPrivate& context) noexcept
{
    auto const owner = context.bundle();
    Reference service;
    do {
        {
            std::lock_guard<std::mutex> const lock(m_mutex);
            context.refuseRegistrations();
            service = owner ? m_index.nextRegisteredBy(*owner, service ? service->record->id() : 0) : nullptr;
        }
        if (service) {
            tryRemove(service->record); // unless its registration is used to unregister it meanwhile
        }
    } while (service);
}

void ServiceRegistry::close() noexcept
{
    ServiceIndex forgotten; // declared before the lock: the services in it may be destroyed, which is foreign code
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_closed = true;
    std::swap(forgotten, m_index);
}

bool ServiceRegistry::isRegistered(ServiceRecord const& record) const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return record.m_state != ServiceRecord::State::unregistered;
}

ServiceRecord::Properties ServiceRegistry::properties(ServiceRecord const& record) const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return record.m_properties;
}

ServiceIndex::Rank ServiceRegistry::rank(ServiceRecord const& record) const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return rankOf(record);
}

ServiceRegistry::Reference ServiceRegistry::untypedReference(std::shared_ptr<ServiceRecord> const& record) const
{
    auto indexed = m_index.untyped(*record);
    // Not in the index: its unregistering is under way, or the framework has ended.
    return indexed ? indexed : std::make_shared<ReferenceData const>(ReferenceData{record, std::string()});
}

void ServiceRegistry::requireRegistered(ServiceRecord const& record) const
{
    if (!isRegistered(record)) {
        throw std::logic_error("Service is unregistered");
    }
}

ServiceIndex::Rank ServiceRegistry::rankOf(ServiceRecord const& record)
{
    return {record.m_ranking, record.m_shownId, record.m_id};
}

} // namespace cppmicroservices::detail::core
