#pragma once

#include "container/MicroServicesContainer.h"
#include "integration/support/BundleArchive.h"
#include "integration/support/LockProbe.h"
#include "integration/support/Services.h"
#include "support/BundleScript.h"
#include "support/Host.h"
#include "support/RecordCapture.h"
#include "support/Threads.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ostrel::test {

/// A host, the records, and one container over the system bundle's context whose bundle directory is the empty path.
///
/// A name is then a path, so that a bundle is known under a name that is its location too. "alpha" is a scripted
/// bundle, all others have no code; the test registers services in their names. What happens is noted step by step.
class RestartFixture : public HostFixture {
protected:
    using Names = std::vector<std::string>;
    using Bundle = cppmicroservices::Bundle;
    using BundleContext = cppmicroservices::BundleContext;

    RestartFixture()
    {
        atStart("alpha", [](const BundleContext&) {});
    }

    static LogRecord loaded(const std::string& name) { return {0x10, "Loaded services with name: '" + name + "'"}; }

    static std::string fileOf(const std::string& name) { return name == "alpha" ? "libalpha.so" : name + ".zip"; }
    std::string locationOf(const std::string& name) const { return host.locationOf(fileOf(name)); }
    Bundle bundle(const std::string& name) const { return host.bundleIn(fileOf(name)); }

    /// Notes the starts and stops of a scripted bundle, and says what is to be done at each of its starts.
    void atStart(const std::string& name, const std::function<void(BundleContext)>& action)
    {
        script.on("start " + name, [this, name, action](const BundleContext& context) {
            note("start " + name);
            action(context);
        });
        script.on("stop " + name, [this, name](auto) { note("stop " + name); });
    }

    /// Adds a bundle of this name and starts it through the container. Ids ascend from bundle to bundle.
    BundleContext started(const std::string& name)
    {
        if (name == "alpha") {
            host.add(name);
        } else {
            addArchive(host, fileOf(name), {bundleWith(name)});
        }
        container.startBundle(locationOf(name));
        return bundle(name).GetBundleContext();
    }

    /// Registers a service that notes when a bundle begins and ends to use it.
    template <typename Interface = Greeter>
    ServiceReferenceU provide(BundleContext context, const std::string& name, const Properties& properties = {})
    {
        const auto get = [this, name] {
            note("get " + name);
            return newMap<Interface>();
        };
        return registerFactory<Interface>(
            std::move(context), get, [this, name] { note("release " + name); }, properties);
    }

    /// Starts a bundle that provides one Greeter of its own name; alpha a new one at each start.
    BundleContext startedProviding(const std::string& name, const Properties& properties = {})
    {
        if (name == "alpha") {
            atStart(name,
                    [this, name, properties](const BundleContext& context) { provide(context, name, properties); });
            return started(name);
        }
        BundleContext context = started(name);
        provide(context, name, properties);
        return context;
    }

    /// Makes one bundle use a service of another, which the container does not hold.
    void use(BundleContext user, BundleContext provider)
    {
        const auto registration = provider.RegisterService<Link>(std::make_shared<Link>());
        m_used.push_back(user.GetService(ServiceReferenceU{registration.GetReference()}));
    }

    /// Forgets what was noted and logged so far.
    void clear()
    {
        trail.clear();
        log.clear();
    }

    /// Runs a restart and shows each step to a function.
    void restartWatched(const std::string& location, std::function<void(const std::string&)> onStep)
    {
        m_onStep = std::move(onStep);
        container.restartBundle(location);
        m_onStep = nullptr;
    }

    void note(const std::string& step)
    {
        trail.push_back(step);
        if (m_onStep) {
            m_onStep(step);
        }
    }

    static constexpr auto active = cppmicroservices::Bundle::STATE_ACTIVE;
    static constexpr auto resolved = cppmicroservices::Bundle::STATE_RESOLVED;

    Names trail;
    BundleScript script{host.context()};
    RecordCapture log;

private:
    struct Link {
        virtual ~Link() = default;
    };

    std::function<void(const std::string&)> m_onStep;
    std::vector<cppmicroservices::InterfaceMapConstPtr> m_used;

protected:
    ostrel::us_container::MicroServicesContainer container{host.context(), ostrel::platform::Utf16Path{u""}};
};

} // namespace ostrel::test
