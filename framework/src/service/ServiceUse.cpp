// Getting the objects of services: who uses what, and the dealings with service factories.

#include "bundle/BundleContextPrivate.h"
#include "bundle/BundleRecord.h"
#include "framework/Events.h"
#include "framework/HandleAccess.h"
#include "service/ServiceRegistry.h"

#include "cppmicroservices/ServiceException.h"
#include "cppmicroservices/ServiceFactory.h"

#include <stdexcept>
#include <utility>

namespace cppmicroservices::core {

namespace {

constexpr char const* factoryKey = "org.cppmicroservices.factory";

[[noreturn]] void refuseReference()
{
    throw std::invalid_argument("Default constructed ServiceReference is not a valid input to GetService()");
}

/// Deleter of the pointers that users of a service hold; keeps the object alive for them.
class UseEnd {
public:
    UseEnd(std::shared_ptr<ServiceRecord> record, std::shared_ptr<ServiceUse> use, std::shared_ptr<void const> object)
        : m_record(std::move(record)), m_use(std::move(use)), m_object(std::move(object))
    {
    }

    void operator()(void const*) noexcept
    {
        m_record->registry().release(m_record, m_use);
        // A weak pointer to the service keeps this deleter; it must not keep the service.
        m_object.reset();
        m_use.reset();
        m_record.reset();
    }

private:
    std::shared_ptr<ServiceRecord> m_record;
    std::shared_ptr<ServiceUse> m_use;
    std::shared_ptr<void const> m_object;
};

/// The first registered interface that the object lacks, or null.
std::string const* missingIn(InterfaceMap const& object, std::vector<std::string> const& classes)
{
    for (auto const& name : classes) {
        if (name != factoryKey && object.count(name) == 0) {
            return &name;
        }
    }
    return nullptr;
}

} // namespace

std::shared_ptr<void> ServiceRegistry::object(Reference const& reference, BundleContextPrivate const& context)
{
    auto granted = acquire(reference->record, context);
    if (!granted.use) {
        return nullptr;
    }
    auto part = ExtractInterface(granted.interfaces, reference->interfaceId);
    auto* const address = part.get();
    return {address, UseEnd(reference->record, std::move(granted.use), std::move(part))};
}

InterfaceMapConstPtr ServiceRegistry::interfaces(Reference const& reference, BundleContextPrivate const& context)
{
    auto granted = acquire(reference->record, context);
    if (!granted.use) {
        return granted.interfaces; // an empty map is handed out as the factory made it
    }
    auto const* const address = granted.interfaces.get();
    return {address, UseEnd(reference->record, std::move(granted.use), std::move(granted.interfaces))};
}

ServiceRegistry::Granted ServiceRegistry::acquire(std::shared_ptr<ServiceRecord> const& record,
                                                  BundleContextPrivate const& context)
{
    for (;;) {
        Use use;
        {
            std::lock_guard<std::mutex> const lock(m_mutex);
            use = useOf(record, context);
            if (!record->m_factory) {
                ++use->count;
                return {use, record->m_object};
            }
            if (use->object) {
                ++use->count;
                return {use, use->object};
            }
        }
        if (use->making.take() == ForeignCodeLock::Outcome::wouldNeverEnd) {
            static char const* const text = "Recursive call to ServiceFactory::GetService";
            m_events->publish(FrameworkEvent::FRAMEWORK_ERROR, record->owner(), text,
                              std::make_exception_ptr(ServiceException(text, ServiceException::FACTORY_RECURSION)));
            return {};
        }
        ForeignCodeScope const making(use->making);
        {
            std::lock_guard<std::mutex> const lock(m_mutex);
            if (use->over) {
                continue; // it ended while this thread waited: begin another one
            }
            if (use->object) {
                ++use->count;
                return {use, use->object};
            }
        }
        return makeWithFactory(record, use);
    }
}

ServiceRegistry::Use ServiceRegistry::useOf(std::shared_ptr<ServiceRecord> const& record,
                                            BundleContextPrivate const& context)
{
    if (record->m_state == ServiceRecord::State::unregistered) {
        refuseReference();
    }
    auto const user = context.bundle();
    if (!user || !context.mayUse()) {
        throw std::runtime_error("The bundle context is no longer valid");
    }
    auto& use = record->m_uses[user.get()];
    if (!use) {
        use = std::make_shared<ServiceUse>(user);
        m_index.addUse(*user, record);
    }
    return use;
}

ServiceRegistry::Granted ServiceRegistry::makeWithFactory(std::shared_ptr<ServiceRecord> const& record, Use const& use)
{
    std::shared_ptr<ServiceFactory> factory;
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        factory = record->m_factory;
    }
    if (!factory) {
        refuseReference(); // unregistered a moment ago
    }
    auto const object = ask(*factory, record, *use);
    if (!object || object->empty()) {
        return {nullptr, object};
    }
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        if (!use->over) {
            use->object = object;
            ++use->count;
            return {use, object};
        }
    }
    // The service was unregistered, or its user stopped, while the factory worked.
    giveBack(*factory, record, *use, object);
    return {};
}

InterfaceMapConstPtr ServiceRegistry::ask(ServiceFactory& factory, std::shared_ptr<ServiceRecord> const& record,
                                          ServiceUse& use)
{
    InterfaceMapConstPtr object;
    try {
        object = factory.GetService(HandleAccess::bundle(use.user), HandleAccess::registration(record));
    } catch (std::exception const& e) {
        m_events->publish(FrameworkEvent::FRAMEWORK_ERROR, record->owner(),
                          "ServiceFactory threw an unknown exception.",
                          std::make_exception_ptr(ServiceException(e.what(), ServiceException::FACTORY_EXCEPTION)));
        return nullptr;
    }
    if (!object || object->empty()) {
        static char const* const text = "ServiceFactory returned an empty or nullptr interface map.";
        m_events->publish(FrameworkEvent::FRAMEWORK_ERROR, record->owner(), text,
                          std::make_exception_ptr(ServiceException(text, ServiceException::FACTORY_ERROR)));
        return object;
    }
    if (auto const* const missing = missingIn(*object, record->classes())) {
        auto const text = "ServiceFactory produced an object that did not implement: " + *missing;
        m_events->publish(FrameworkEvent::FRAMEWORK_WARNING, record->owner(), text,
                          std::make_exception_ptr(std::logic_error(text)));
        return nullptr;
    }
    return object;
}

void ServiceRegistry::giveBack(ServiceFactory& factory, std::shared_ptr<ServiceRecord> const& record,
                               ServiceUse const& use, InterfaceMapConstPtr const& object) noexcept
{
    // Runs where a pointer is let go, so nothing may leave it.
    try {
        factory.UngetService(HandleAccess::bundle(use.user), HandleAccess::registration(record), object);
    } catch (...) {
        m_events->publish(FrameworkEvent::FRAMEWORK_ERROR, record->owner(), "ServiceFactory threw an exception",
                          std::current_exception());
    }
}

void ServiceRegistry::release(std::shared_ptr<ServiceRecord> const& record, Use const& use) noexcept
{
    std::shared_ptr<ServiceFactory> factory;
    Use ended; // declared before the lock: the last holder of the use's object may be this one
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        if (use->over || --use->count != 0) {
            return;
        }
        use->over = true;
        factory = record->m_factory;
        m_index.removeUse(*use->user, *record);
        auto const found = record->m_uses.find(use->user.get());
        ended = std::move(found->second);
        record->m_uses.erase(found);
    }
    if (factory && ended->object) {
        giveBack(*factory, record, *ended, ended->object);
    }
}

ServiceRegistry::References ServiceRegistry::usedBy(BundleRecord const& bundle) const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_index.usedBy(bundle);
}

std::vector<std::shared_ptr<BundleRecord>> ServiceRegistry::users(ServiceRecord const& record) const
{
    std::vector<std::shared_ptr<BundleRecord>> result;
    std::lock_guard<std::mutex> const lock(m_mutex);
    for (auto const& entry : record.m_uses) {
        result.push_back(entry.second->user);
    }
    return result;
}

void ServiceRegistry::endUses(BundleContextPrivate& context) noexcept
{
    auto const user = context.bundle();
    if (!user) {
        return;
    }
    struct Ended {
        std::shared_ptr<ServiceRecord> record;
        std::shared_ptr<ServiceFactory> factory;
        Use use;
    };
    std::vector<Ended> ended;
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        context.refuseUses();
        for (auto const& reference : m_index.usedBy(*user)) {
            auto const& record = reference->record;
            auto const found = record->m_uses.find(user.get());
            found->second->over = true;
            ended.push_back({record, record->m_factory, std::move(found->second)});
            record->m_uses.erase(found);
            m_index.removeUse(*user, *record);
        }
    }
    for (auto const& each : ended) {
        if (each.factory && each.use->object) {
            giveBack(*each.factory, each.record, *each.use, each.use->object);
        }
    }
}

} // namespace cppmicroservices::core
