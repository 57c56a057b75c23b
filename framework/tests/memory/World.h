#pragma once

#include "support/TemporaryDirectory.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/BundleEvent.h>
#include <cppmicroservices/BundleTracker.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/PrototypeServiceFactory.h>
#include <cppmicroservices/ServiceEvent.h>
#include <cppmicroservices/ServiceTracker.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ostrel::test {

struct Tool {
    virtual ~Tool() = default;
};

/// A framework with two bundles, of which one registers three services, and with all that can be told of it.
class World {
public:
    World();
    World(World const&) = delete;
    World& operator=(World const&) = delete;
    ~World();

    /// What a bundle developer can see, but for events.
    std::string state() const;

    /// How many events of each kind came since listen().
    std::string events() const;
    void listen();

    TemporaryDirectory directory;
    std::optional<cppmicroservices::Framework> framework;
    cppmicroservices::BundleContext context;
    cppmicroservices::Bundle services; ///< registers three
    cppmicroservices::Bundle scripted; ///< an activator that does nothing
    cppmicroservices::ServiceRegistrationU registration;
    std::shared_ptr<Tool> tool;
    cppmicroservices::InterfaceMapConstPtr interfaces;
    std::vector<cppmicroservices::ListenerToken> tokens;
    std::unique_ptr<cppmicroservices::ServiceTracker<Tool>> serviceTracker;
    std::unique_ptr<cppmicroservices::BundleTracker<>> bundleTracker;
    int lent = 0; ///< objects that factories of the test have given out and not got back

private:
    std::array<int, 16> m_events{};
    std::vector<cppmicroservices::ListenerToken> m_own;
};

struct RealTool final : Tool {};

/// Makes tools, and counts in the world what it has given out.
class Lender final : public cppmicroservices::PrototypeServiceFactory {
public:
    explicit Lender(World& world) : m_world(world) {}

    cppmicroservices::InterfaceMapConstPtr GetService(cppmicroservices::Bundle const& user,
                                                      cppmicroservices::ServiceRegistrationBase const& self) override;
    void UngetService(cppmicroservices::Bundle const& user, cppmicroservices::ServiceRegistrationBase const& self,
                      cppmicroservices::InterfaceMapConstPtr const& object) override;

private:
    World& m_world;
};

struct Expectation {
    std::function<void(World&)> prepare = [](World&) {};
    std::function<void(World&)> operate;

    /// States that an exception may leave as well, beside that of before and that of success; each as what leads to it.
    std::vector<std::function<void(World&)>> alsoAllowed = {};

    /// Whether the world listens to events meanwhile.
    bool listens = true;

    /// Whether other threads take part, whose memory is then counted as well.
    bool threads = false;
};

/// Lets each allocation of the operation fail once, each time in another world. Where it throws, the state must be that
/// of before, of success or an allowed one, and the same operation once more must bring success; where it does not, the
/// state and the events must be those of success.
void expectSound(Expectation const& expectation);

} // namespace ostrel::test
