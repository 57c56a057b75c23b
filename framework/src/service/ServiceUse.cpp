// Getting the objects of services: who uses what, and the dealings with service factories.

#include "bundle/BundleContextPrivate.h"
#include "bundle/BundleRecord.h"
#include "event/Events.h"
#include "framework/HandleAccess.h"
#include "service/ServiceRegistry.h"
#include "value/Reason.h"

#include "cppmicroservices/PrototypeServiceFactory.h"
#include "cppmicroservices/ServiceException.h"
#include "cppmicroservices/ServiceFactory.h"

#include <exception>
#include <stdexcept>
#include <utility>

namespace cppmicroservices::detail::core {

namespace {

constexpr char const* factoryKey = "org.cppmicroservices.factory";

[[noreturn]] void refuseReference()
{
    throw std::invalid_argument("Default constructed ServiceReference is not a valid input to GetService()");
}

/// The bundle behind a context that may use services.
///
/// @throws std::runtime_error for a context that is no longer valid
std::shared_ptr<BundleRecord> requireUser(BundleContextPrivate const& context)
{
    auto user = context.bundle();
    if (!user || !context.mayUse()) {
        throw std::runtime_error("The bundle context is no longer valid");
    }
    return user;
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

/// The exception of a factory as events tell of it.
std::exception_ptr asFactoryException(std::exception_ptr const& thrown)
{
    try {
        std::rethrow_exception(thrown);
    } catch (std::exception const& e) {
        return std::make_exception_ptr(ServiceException(e.what(), ServiceException::FACTORY_EXCEPTION));
    } catch (...) {
        return thrown;
    }
}

/// What the user of a service gets; null when nothing was granted.
std::shared_ptr<void> toObject(std::shared_ptr<ReferenceData const> const& reference, std::shared_ptr<ServiceUse> use,
                               InterfaceMapConstPtr const& interfaces)
{
    if (!use) {
        return nullptr;
    }
    auto part = ExtractInterface(interfaces, reference->interfaceId);
    auto* const address = part.get();
    return {address, UseEnd(reference->record, std::move(use), std::move(part))};
}

InterfaceMapConstPtr toMap(std::shared_ptr<ReferenceData const> const& reference, std::shared_ptr<ServiceUse> use,
                           InterfaceMapConstPtr interfaces)
{
    if (!use) {
        return interfaces; // an empty map is handed out as the factory made it
    }
    auto const* const address = interfaces.get();
    return {address, UseEnd(reference->record, std::move(use), std::move(interfaces))};
}

} // namespace

std::shared_ptr<void> ServiceRegistry::object(Reference const& reference, BundleContextPrivate const& context)
{
    auto granted = acquire(reference->record, context);
    if (!granted.registered) {
        refuseReference();
    }
    return toObject(reference, std::move(granted.use), granted.interfaces);
}

InterfaceMapConstPtr ServiceRegistry::interfaces(Reference const& reference, BundleContextPrivate const& context)
{
    auto granted = acquire(reference->record, context);
    if (!granted.registered) {
        refuseReference();
    }
    return toMap(reference, std::move(granted.use), std::move(granted.interfaces));
}

std::shared_ptr<void> ServiceRegistry::ownObject(Reference const& reference, BundleContextPrivate const& context)
{
    auto granted = acquireOwn(reference->record, context);
    return toObject(reference, std::move(granted.use), granted.interfaces);
}

InterfaceMapConstPtr ServiceRegistry::ownInterfaces(Reference const& reference, BundleContextPrivate const& context)
{
    auto granted = acquireOwn(reference->record, context);
    return toMap(reference, std::move(granted.use), std::move(granted.interfaces));
}

ServiceRegistry::Granted ServiceRegistry::acquire(std::shared_ptr<ServiceRecord> const& record,
                                                  BundleContextPrivate const& context)
{
    for (;;) {
        Use use;
        {
            std::lock_guard<std::mutex> const lock(m_mutex);
            if (record->m_state == ServiceRecord::State::unregistered) {
                return {nullptr, nullptr, false};
            }
            auto const user = requireUser(context);
            auto const known = record->m_uses.find(user.get());
            if (known != record->m_uses.end()) {
                use = known->second.shared;
            }
            if (!use) {
                use = std::make_shared<ServiceUse>(user);
                addShared(record, use);
            }
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
            m_events->publish(FrameworkEvent::FRAMEWORK_ERROR, use->user, text,
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

ServiceRegistry::Granted ServiceRegistry::acquireOwn(std::shared_ptr<ServiceRecord> const& record,
                                                     BundleContextPrivate const& context)
{
    std::shared_ptr<ServiceFactory> factory;
    std::shared_ptr<BundleRecord> user;
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        if (record->m_state == ServiceRecord::State::unregistered) {
            return {nullptr, nullptr, false};
        }
        user = requireUser(context);
        factory = record->m_factory;
    }
    bool const isPrototype = dynamic_cast<PrototypeServiceFactory*>(factory.get()) != nullptr;
    return isPrototype ? makeOwn(*factory, record, user) : acquire(record, context);
}

template <class Add>
void ServiceRegistry::addUse(std::shared_ptr<ServiceRecord> const& record, Use const& use, Add&& add)
{
    auto const& user = *use->user;
    auto const uses = record->m_uses.try_emplace(&user).first;
    bool const isFirst = uses->second.empty();
    try {
        if (isFirst) {
            m_index.addUse(user, record);
        }
        add(uses->second);
    } catch (...) {
        if (isFirst) {
            m_index.removeUse(user, *record);
            record->m_uses.erase(uses);
        }
        throw;
    }
}

void ServiceRegistry::addShared(std::shared_ptr<ServiceRecord> const& record, Use const& use)
{
    addUse(record, use, [&use](BundleUses& uses) { uses.shared = use; });
}

void ServiceRegistry::addOwn(std::shared_ptr<ServiceRecord> const& record, Use const& use)
{
    addUse(record, use, [&use](BundleUses& uses) { uses.own.insert(use); });
}

ServiceRegistry::Granted ServiceRegistry::makeWithFactory(std::shared_ptr<ServiceRecord> const& record, Use const& use)
{
    std::shared_ptr<ServiceFactory> factory;
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        factory = record->m_factory;
    }
    if (!factory) {
        return {nullptr, nullptr, false}; // unregistered a moment ago
    }
    auto const object = ask(*factory, record, use->user);
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
    ServiceUse unused(use->user);
    unused.object = object;
    giveBack(*factory, record, unused, Reason::released);
    return {};
}

ServiceRegistry::Granted ServiceRegistry::makeOwn(ServiceFactory& factory, std::shared_ptr<ServiceRecord> const& record,
                                                  std::shared_ptr<BundleRecord> const& user)
{
    auto use = std::make_shared<ServiceUse>(user); // before the object, which would be lost without it
    auto const object = ask(factory, record, user);
    if (!object || object->empty()) {
        return {nullptr, object};
    }
    use->object = object;
    use->count = 1;
    std::exception_ptr noMemory;
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        if (record->m_state != ServiceRecord::State::unregistered) {
            noMemory = caughtFrom([&] { addOwn(record, use); });
            if (!noMemory) {
                return {use, object};
            }
        }
    }
    giveBack(factory, record, *use, Reason::released);
    if (noMemory) {
        std::rethrow_exception(noMemory);
    }
    return {};
}

InterfaceMapConstPtr ServiceRegistry::ask(ServiceFactory& factory, std::shared_ptr<ServiceRecord> const& record,
                                          std::shared_ptr<BundleRecord> const& user)
{
    InterfaceMapConstPtr object;
    try {
        object = factory.GetService(HandleAccess::bundle(user), HandleAccess::registration(record));
    } catch (std::exception const& e) {
        m_events->publish(FrameworkEvent::FRAMEWORK_ERROR, user, "ServiceFactory threw an unknown exception.",
                          std::make_exception_ptr(ServiceException(e.what(), ServiceException::FACTORY_EXCEPTION)));
        return nullptr;
    }
    if (!object || object->empty()) {
        static char const* const text = "ServiceFactory returned an empty or nullptr interface map.";
        m_events->publish(FrameworkEvent::FRAMEWORK_ERROR, user, text,
                          std::make_exception_ptr(ServiceException(text, ServiceException::FACTORY_ERROR)));
        return object;
    }
    if (auto const* const missing = missingIn(*object, record->classes())) {
        std::string const text = "ServiceFactory produced an object that did not implement: " + *missing;
        m_events->publish(FrameworkEvent::FRAMEWORK_WARNING, user, text,
                          std::make_exception_ptr(std::logic_error(text)));
        return nullptr;
    }
    return object;
}

void ServiceRegistry::giveBack(ServiceFactory& factory, std::shared_ptr<ServiceRecord> const& record,
                               ServiceUse const& use, Reason reason) noexcept
{
    // Runs where a pointer is let go, so nothing may leave it.
    auto thrown = caughtFrom(
        [&] { factory.UngetService(HandleAccess::bundle(use.user), HandleAccess::registration(record), use.object); });
    if (!thrown) {
        return;
    }
    (void)caughtFrom([&] { thrown = asFactoryException(thrown); }); // without memory, it is told as it is
    bool const released = reason == Reason::released;
    m_events->publish(FrameworkEvent::FRAMEWORK_ERROR, released ? use.user : record->owner(),
                      released ? "ServiceFactory threw an exception"
                               : "ServiceFactory UngetService implementation threw an exception",
                      thrown);
}

void ServiceRegistry::release(std::shared_ptr<ServiceRecord> const& record, Use const& use) noexcept
{
    std::shared_ptr<ServiceFactory> factory;
    BundleUses ended; // declared before the lock: the last holder of the use's object may be this one
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        if (use->over || --use->count != 0) {
            return;
        }
        use->over = true;
        factory = record->m_factory;
        auto const found = record->m_uses.find(use->user.get());
        auto& uses = found->second;
        if (uses.shared == use) {
            ended.shared = std::move(uses.shared);
        } else {
            ended.own.insert(uses.own.extract(use));
        }
        if (uses.empty()) {
            record->m_uses.erase(found);
            m_index.removeUse(*use->user, *record);
        }
    }
    if (factory && use->object) {
        giveBack(*factory, record, *use, Reason::released);
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
        if (entry.second.shared) {
            result.push_back(entry.second.shared->user);
        }
    }
    return result;
}

void ServiceRegistry::endUses(BundleContextPrivate& context) noexcept
{
    auto const user = context.bundle();
    if (!user) {
        return;
    }
    Reference used;
    do {
        Use ended;
        std::shared_ptr<ServiceFactory> factory;
        {
            std::lock_guard<std::mutex> const lock(m_mutex);
            context.refuseUses();
            used = m_index.nextUsedBy(*user, used ? used->record->id() : 0);
            if (used) {
                ended = endSharedUse(*used->record, *user);
                factory = used->record->m_factory;
            }
        }
        if (ended && ended->object && factory) {
            giveBack(*factory, used->record, *ended, Reason::released);
        }
    } while (used);
}

ServiceRegistry::Use ServiceRegistry::endSharedUse(ServiceRecord& record, BundleRecord const& user)
{
    auto const found = record.m_uses.find(&user);
    auto ended = std::exchange(found->second.shared, nullptr);
    if (ended) {
        ended->over = true;
        if (found->second.empty()) {
            record.m_uses.erase(found);
            m_index.removeUse(user, record);
        }
    }
    return ended;
}

} // namespace cppmicroservices::detail::core
