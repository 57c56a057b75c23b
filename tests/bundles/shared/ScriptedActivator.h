#pragma once

#include "bundles/shared/ActivatorHooks.h"
#include "bundles/shared/Word.h"

#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/ServiceFactory.h>

#include <memory>
#include <string>
#include <utility>

/// The activator of scripted bundles: tells the ActivatorHooks of each step, and registers one Word.
///
/// Each bundle derives from it in an anonymous namespace and gives its symbolic name.
namespace ostrel::test {

class ScriptedActivator : public cppmicroservices::BundleActivator {
public:
    explicit ScriptedActivator(std::string name) : m_name(std::move(name)) {}

    void Start(cppmicroservices::BundleContext context) override
    {
        m_hooks = hooksIn(context);
        tell("start", context);
        std::shared_ptr<cppmicroservices::ServiceFactory> factory = std::make_shared<WordFactory>(m_name, m_hooks);
        context.RegisterService<Word>(factory, {{"test.word", m_name}});
    }

    void Stop(cppmicroservices::BundleContext context) override { tell("stop", context); }

private:
    class Impl final : public Word {
    public:
        explicit Impl(std::string text) : m_text(std::move(text)) {}
        std::string text() const override { return m_text; }

    private:
        std::string m_text;
    };

    class WordFactory final : public cppmicroservices::ServiceFactory {
    public:
        WordFactory(std::string name, std::shared_ptr<ActivatorHooks> hooks)
            : m_name(std::move(name)), m_hooks(std::move(hooks))
        {
        }

        cppmicroservices::InterfaceMapConstPtr GetService(const cppmicroservices::Bundle& /*user*/,
                                                          const cppmicroservices::ServiceRegistrationBase&) override
        {
            if (m_hooks) {
                m_hooks->happened("get " + m_name, {});
            }
            return cppmicroservices::MakeInterfaceMap<Word>(std::make_shared<Impl>(m_name));
        }

        void UngetService(const cppmicroservices::Bundle& /*user*/, const cppmicroservices::ServiceRegistrationBase&,
                          const cppmicroservices::InterfaceMapConstPtr&) override
        {
            if (m_hooks) {
                m_hooks->happened("release " + m_name, {});
            }
        }

    private:
        std::string m_name;
        std::shared_ptr<ActivatorHooks> m_hooks;
    };

    static std::shared_ptr<ActivatorHooks> hooksIn(cppmicroservices::BundleContext context)
    {
        const auto reference = context.GetServiceReference<ActivatorHooks>();
        return reference ? context.GetService(reference) : nullptr;
    }

    void tell(const std::string& step, const cppmicroservices::BundleContext& context)
    {
        if (m_hooks) {
            m_hooks->happened(step + " " + m_name, context);
        }
    }

    std::string m_name;
    std::shared_ptr<ActivatorHooks> m_hooks;
};

} // namespace ostrel::test
