#pragma once

#include "contract/traces/Choices.h"
#include "contract/traces/TracedService.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <memory>
#include <string>
#include <vector>

namespace contract {

/// A framework with three bundles that register services, use them and listen for them.
class Services {
public:
    Services(Choices& choices, Trace& trace);
    ~Services();
    Services(Services const&) = delete;
    Services& operator=(Services const&) = delete;

    void step();

private:
    struct Held {
        std::string name;
        std::shared_ptr<void const> object;
        std::string user;
    };

    cppmicroservices::ServiceProperties randomProperties(bool changed = false);
    std::string randomFilter();
    std::string randomClass();
    cppmicroservices::BundleContext context() { return m_choices.of(m_bundles).GetBundleContext(); }
    cppmicroservices::ServiceReferenceU reference();

    void registerOne();
    void registerFactory();
    void registerWrongly();
    void change();
    void query();
    void get();
    void getObjects();
    void release();
    void look();
    void lookAtBundle();
    void compare();
    void listen();
    void restart();

    void added(cppmicroservices::ServiceRegistrationU registration);
    std::string list(std::vector<cppmicroservices::ServiceReferenceU> const& references) const;
    std::string names(std::vector<cppmicroservices::Bundle> bundles) const;

    Choices& m_choices;
    Trace& m_trace;
    cppmicroservices::Framework m_framework = cppmicroservices::FrameworkFactory().NewFramework();
    ServiceNames m_names{0};
    std::vector<cppmicroservices::Bundle> m_bundles;
    std::vector<cppmicroservices::ServiceRegistrationU> m_registrations;
    /// Of factories that fail: asking those through ServiceObjects may crash 3.8.4.
    std::vector<cppmicroservices::ServiceReferenceU> m_failing;
    std::vector<cppmicroservices::ServiceReferenceU> m_references{cppmicroservices::ServiceReferenceU()};
    std::vector<Held> m_held;
    std::vector<Held> m_kept;
    std::vector<cppmicroservices::ListenerToken> m_tokens;
    int m_objects = 0;
    int m_listeners = 0;
    int m_factories = 0;
};

} // namespace contract
