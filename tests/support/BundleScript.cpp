#include "support/BundleScript.h"

#include <mutex>
#include <unordered_map>
#include <utility>

namespace ostrel::test {

class BundleScript::Hooks final : public ActivatorHooks {
public:
    void happened(const std::string& event, cppmicroservices::BundleContext context) override
    {
        Action action;
        {
            const std::lock_guard lock{m_mutex};
            m_events.push_back(event);
            const auto found = m_actions.find(event);
            if (found != m_actions.end()) {
                action = found->second;
            }
        }
        if (action) {
            action(std::move(context));
        }
    }

    void on(const std::string& event, Action action)
    {
        const std::lock_guard lock{m_mutex};
        m_actions[event] = std::move(action);
    }

    std::vector<std::string> events() const
    {
        const std::lock_guard lock{m_mutex};
        return m_events;
    }

    void clear()
    {
        const std::lock_guard lock{m_mutex};
        m_events.clear();
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_events;
    std::unordered_map<std::string, Action> m_actions;
};

BundleScript::BundleScript(cppmicroservices::BundleContext context)
    : m_hooks(std::make_shared<Hooks>()), m_registration(context.RegisterService<ActivatorHooks>(m_hooks))
{
}

void BundleScript::on(const std::string& event, Action action)
{
    m_hooks->on(event, std::move(action));
}

std::vector<std::string> BundleScript::events() const
{
    return m_hooks->events();
}

void BundleScript::clear()
{
    m_hooks->clear();
}

} // namespace ostrel::test
