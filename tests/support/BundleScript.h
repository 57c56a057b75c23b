#pragma once

#include "bundles/shared/ActivatorHooks.h"

#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/ServiceRegistration.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ostrel::test {

/// Sees what scripted bundles of one framework do, and acts inside them; see ActivatorHooks for the events.
///
/// Create it before the bundles start and keep it until they have stopped.
class BundleScript {
public:
    using Action = std::function<void(cppmicroservices::BundleContext)>;

    explicit BundleScript(cppmicroservices::BundleContext context);

    /// Runs the action at each such event, on the thread of the event and without a lock; it may throw.
    void on(const std::string& event, Action action);

    /// The events so far, in order.
    std::vector<std::string> events() const;
    void clear();

private:
    class Hooks;
    std::shared_ptr<Hooks> m_hooks;
    cppmicroservices::ServiceRegistration<ActivatorHooks> m_registration;
};

} // namespace ostrel::test
