#pragma once

#include "contract/traces/Choices.h"
#include "contract/traces/Trace.h"

#include <cppmicroservices/PrototypeServiceFactory.h>
#include <cppmicroservices/ServiceInterface.h>
#include <cppmicroservices/ServiceReference.h>

#include <memory>
#include <string>

namespace contract {

struct First {
    virtual ~First() = default;
    virtual int number() const = 0;
};

struct Second {
    virtual ~Second() = default;
    virtual int number() const = 0;
};

struct Third {
    virtual ~Third() = default;
    virtual int number() const = 0;
};

/// A service object that is known by its number, and says when it goes.
class TracedService final : public First, public Second, public Third {
public:
    TracedService(int number, Trace& trace) : m_number(number), m_trace(trace) {}
    TracedService(TracedService const&) = delete;
    TracedService& operator=(TracedService const&) = delete;
    ~TracedService() override { m_trace.line("object " + std::to_string(m_number) + " goes"); }

    int number() const override { return m_number; }

private:
    int m_number;
    Trace& m_trace;
};

/// The properties of a service that are the same in each run: ids count from the framework's first service.
class ServiceNames {
public:
    explicit ServiceNames(long base) : m_base(base) {}

    long idOf(cppmicroservices::ServiceReferenceBase const& reference) const;
    std::string nameOf(cppmicroservices::ServiceReferenceBase const& reference) const;
    /// The text with the ids in it made relative.
    std::string relative(std::string text) const;
    long base() const { return m_base; }

private:
    long m_base;
};

/// Makes numbered objects in its own way, which may be a wrong one, and says when it is asked.
class TracedFactory final : public cppmicroservices::ServiceFactory {
public:
    enum Way { right, nothing, emptyMap, otherInterface, nullObject, throwsException, throwsNumber, ungetThrows, ways };

    TracedFactory(std::string name, Way way, Trace& trace, ServiceNames const& names)
        : m_name(std::move(name)), m_way(way), m_trace(trace), m_names(names)
    {
    }

    cppmicroservices::InterfaceMapConstPtr
    GetService(cppmicroservices::Bundle const& bundle,
               cppmicroservices::ServiceRegistrationBase const& registration) override;
    void UngetService(cppmicroservices::Bundle const& bundle,
                      cppmicroservices::ServiceRegistrationBase const& registration,
                      cppmicroservices::InterfaceMapConstPtr const& service) override;

private:
    std::string m_name;
    Way m_way;
    Trace& m_trace;
    ServiceNames const& m_names;
    int m_made = 0;
};

/// The same, with the prototype scope.
class TracedPrototypes final : public cppmicroservices::PrototypeServiceFactory {
public:
    explicit TracedPrototypes(std::shared_ptr<TracedFactory> factory) : m_factory(std::move(factory)) {}

    cppmicroservices::InterfaceMapConstPtr
    GetService(cppmicroservices::Bundle const& bundle,
               cppmicroservices::ServiceRegistrationBase const& registration) override
    {
        return m_factory->GetService(bundle, registration);
    }

    void UngetService(cppmicroservices::Bundle const& bundle,
                      cppmicroservices::ServiceRegistrationBase const& registration,
                      cppmicroservices::InterfaceMapConstPtr const& service) override
    {
        m_factory->UngetService(bundle, registration, service);
    }

private:
    std::shared_ptr<TracedFactory> m_factory;
};

} // namespace contract

CPPMICROSERVICES_DECLARE_SERVICE_INTERFACE(contract::Second, "my.second")
