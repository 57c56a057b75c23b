#include "bundles/shared/ActivatorHooks.h"
#include "bundles/shared/ThrowOwnFault.h"
#include "bundles/shared/Word.h"

#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/GetBundleContext.h>
#include <cppmicroservices/ServiceFactory.h>

#include <memory>
#include <string>
#include <utility>

namespace {

using cppmicroservices::BundleContext;
using ostrel::test::ActivatorHooks;
using ostrel::test::Word;

/// No std::exception.
class OwnFault {
public:
    explicit OwnFault(std::string text) : m_text(std::move(text)) {}
    OwnFault(const OwnFault&) = default;
    OwnFault& operator=(const OwnFault&) = delete;
    ~OwnFault() { m_text.assign(m_text.size(), '-'); }

private:
    std::string m_text;
};

class Teller {
public:
    explicit Teller(std::shared_ptr<ActivatorHooks> hooks) : m_hooks(std::move(hooks)) {}

    void tell(const std::string& step, BundleContext context = {}) const
    {
        if (!m_hooks) {
            return;
        }
        try {
            m_hooks->happened(step + " " US_STR(US_BUNDLE_NAME), std::move(context));
        } catch (const ostrel::test::ThrowOwnFault&) {
            throw OwnFault("a text that is too long to be kept inside of the string: " + step);
        }
    }

private:
    std::shared_ptr<ActivatorHooks> m_hooks;
};

class WildWord final : public Word {
public:
    explicit WildWord(Teller teller) : m_teller(std::move(teller)) { m_teller.tell("make"); }
    WildWord(const WildWord&) = delete;
    WildWord& operator=(const WildWord&) = delete;
    ~WildWord() override { m_teller.tell("end"); }

    std::string text() const override { return US_STR(US_BUNDLE_NAME); }

private:
    Teller m_teller;
};

class WildFactory final : public cppmicroservices::ServiceFactory {
public:
    explicit WildFactory(Teller teller) : m_teller(std::move(teller)) {}
    WildFactory(const WildFactory&) = delete;
    WildFactory& operator=(const WildFactory&) = delete;
    ~WildFactory() override { m_teller.tell("close"); }

    cppmicroservices::InterfaceMapConstPtr GetService(const cppmicroservices::Bundle& /*user*/,
                                                      const cppmicroservices::ServiceRegistrationBase&) override
    {
        m_teller.tell("get");
        return cppmicroservices::MakeInterfaceMap<Word>(std::make_shared<WildWord>(m_teller));
    }

    void UngetService(const cppmicroservices::Bundle& /*user*/, const cppmicroservices::ServiceRegistrationBase&,
                      const cppmicroservices::InterfaceMapConstPtr&) override
    {
        m_teller.tell("release");
    }

private:
    Teller m_teller;
};

std::shared_ptr<ActivatorHooks> hooks()
{
    auto context = cppmicroservices::GetBundleContext();
    const auto reference = context.GetServiceReference<ActivatorHooks>();
    return reference ? context.GetService(reference) : nullptr;
}

class Wild final : public cppmicroservices::BundleActivator {
public:
    Wild() : m_teller(hooks()) { m_teller.tell("construct", cppmicroservices::GetBundleContext()); }
    Wild(const Wild&) = delete;
    Wild& operator=(const Wild&) = delete;
    ~Wild() override { m_teller.tell("destroy", cppmicroservices::GetBundleContext()); }

    void Start(BundleContext context) override
    {
        std::shared_ptr<cppmicroservices::ServiceFactory> factory = std::make_shared<WildFactory>(m_teller);
        context.RegisterService<Word>(factory);
        m_teller.tell("start", context);
    }

    void Stop(BundleContext context) override { m_teller.tell("stop", context); }

private:
    Teller m_teller;
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Wild)
