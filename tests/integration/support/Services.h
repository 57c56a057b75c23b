#pragma once

#include <cppmicroservices/Any.h>
#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/ServiceFactory.h>
#include <cppmicroservices/ServiceInterface.h>
#include <cppmicroservices/ServiceReference.h>
#include <cppmicroservices/ServiceRegistration.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ostrel::test {

/// Three interfaces under which tests register services.
struct Greeter {
    virtual ~Greeter() = default;
};
struct Singer {
    virtual ~Singer() = default;
};
struct Dancer {
    virtual ~Dancer() = default;
};

inline const std::string greeterName = "ostrel::test::Greeter";
inline const std::string singerName = "ostrel::test::Singer";
inline const std::string dancerName = "ostrel::test::Dancer";

struct PlainGreeter final : Greeter {};

/// Runs a function when it is destroyed.
class DyingGreeter final : public Greeter {
public:
    explicit DyingGreeter(std::function<void()> atEnd) : m_atEnd(std::move(atEnd)) {}
    DyingGreeter(const DyingGreeter&) = delete;
    DyingGreeter& operator=(const DyingGreeter&) = delete;
    ~DyingGreeter() override { m_atEnd(); }

private:
    std::function<void()> m_atEnd;
};

/// A factory made of two functions. A bundle's first use of the service gets an object, its last use gives it back.
class FunctionFactory final : public cppmicroservices::ServiceFactory {
public:
    using Get = std::function<cppmicroservices::InterfaceMapConstPtr()>;
    using Unget = std::function<void()>;

    FunctionFactory(Get get, Unget unget) : m_get(std::move(get)), m_unget(std::move(unget)) {}

    cppmicroservices::InterfaceMapConstPtr GetService(const cppmicroservices::Bundle&,
                                                      const cppmicroservices::ServiceRegistrationBase&) override
    {
        return m_get();
    }

    void UngetService(const cppmicroservices::Bundle&, const cppmicroservices::ServiceRegistrationBase&,
                      const cppmicroservices::InterfaceMapConstPtr&) override
    {
        if (m_unget) {
            m_unget();
        }
    }

private:
    Get m_get;
    Unget m_unget;
};

/// What a factory of such a service hands out: one new object under its interface.
template <typename Interface>
cppmicroservices::InterfaceMapConstPtr newMap()
{
    struct Plain final : Interface {};
    return cppmicroservices::MakeInterfaceMap<Interface>(std::make_shared<Plain>());
}

using ServiceReferenceU = cppmicroservices::ServiceReference<void>;

/// The service with this id, as the framework finds it.
inline ServiceReferenceU referenceTo(cppmicroservices::BundleContext context, long id)
{
    return context.GetServiceReferences("", "(service.id=" + std::to_string(id) + ")").at(0);
}

inline long idOf(const cppmicroservices::ServiceReferenceBase& reference)
{
    return cppmicroservices::any_cast<long>(reference.GetProperty("service.id"));
}

/// The name under which one service is loaded by its id.
inline std::string loadNameOf(const cppmicroservices::ServiceReferenceBase& reference)
{
    return "(service.id=" + std::to_string(idOf(reference)) + ")";
}

using Properties = std::map<std::string, cppmicroservices::Any>;

inline cppmicroservices::ServiceProperties asServiceProperties(const Properties& properties)
{
    cppmicroservices::ServiceProperties result;
    for (const auto& [key, value] : properties) {
        result[key] = value;
    }
    return result;
}

/// Registers a plain Greeter in the name of the context's bundle.
inline ServiceReferenceU registerGreeter(cppmicroservices::BundleContext context, const Properties& properties = {})
{
    const auto registration =
        context.RegisterService<Greeter>(std::make_shared<PlainGreeter>(), asServiceProperties(properties));
    return ServiceReferenceU{registration.GetReference()};
}

/// Registers a factory of an interface in the name of the context's bundle.
template <typename Interface = Greeter>
ServiceReferenceU registerFactory(cppmicroservices::BundleContext context, FunctionFactory::Get get,
                                  FunctionFactory::Unget unget = {}, const Properties& properties = {})
{
    const std::shared_ptr<cppmicroservices::ServiceFactory> factory =
        std::make_shared<FunctionFactory>(std::move(get), std::move(unget));
    const auto registration = context.RegisterService<Interface>(factory, asServiceProperties(properties));
    return ServiceReferenceU{registration.GetReference()};
}

/// Symbolic names of the bundles that use the service, in the framework's order.
inline std::vector<std::string> usersOf(const cppmicroservices::ServiceReferenceBase& reference)
{
    std::vector<std::string> names;
    for (const cppmicroservices::Bundle& bundle : reference.GetUsingBundles()) {
        names.push_back(bundle.GetSymbolicName());
    }
    return names;
}

} // namespace ostrel::test
