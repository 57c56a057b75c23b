#pragma once

#include "bundles/shared/ThrowOwnFault.h"
#include "bundles/shared/Word.h"
#include "contract/ThrownText.h"
#include "support/BundleScript.h"
#include "support/Host.h"
#include "support/Threads.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkEvent.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace ostrel::test {

/// A test with a framework and bundles in which it acts wherever foreign code runs; see tests/bundles/wild.
///
/// A test whose actions refer to its locals calls host.stop() at its end, as the bundles stop after it otherwise.
class WildFixture : public HostFixture {
protected:
    cppmicroservices::Bundle install(const std::string& target)
    {
        return host.context().InstallBundles(host.locationOf(host.add(target))).at(0);
    }

    cppmicroservices::Bundle start(const std::string& target)
    {
        auto bundle = install(target);
        bundle.Start();
        return bundle;
    }

    /// The Word that a bundle registered.
    static cppmicroservices::ServiceReference<Word> wordOf(const cppmicroservices::Bundle& bundle)
    {
        for (const auto& reference : bundle.GetRegisteredServices()) {
            cppmicroservices::ServiceReference<Word> word(reference);
            if (word) {
                return word;
            }
        }
        return {};
    }

    cppmicroservices::Framework framework() const { return cppmicroservices::Framework(host.context().GetBundle(0)); }

    long countOf(const std::string& event) const
    {
        const auto all = script.events();
        return std::count(all.begin(), all.end(), event);
    }

    static constexpr auto active = cppmicroservices::Bundle::STATE_ACTIVE;
    static constexpr auto resolved = cppmicroservices::Bundle::STATE_RESOLVED;
    static constexpr auto installed = cppmicroservices::Bundle::STATE_INSTALLED;
    static constexpr auto uninstalled = cppmicroservices::Bundle::STATE_UNINSTALLED;

    BundleScript script{host.context()};
};

/// How a test's action misbehaves.
inline void throwFault(int kind)
{
    switch (kind) {
    case 0:
        throw std::runtime_error("planned fault");
    case 1:
        throw 42;
    default:
        throw ThrowOwnFault{};
    }
}

/// What the framework says of it.
inline std::string faultText(int kind)
{
    return kind == 0 ? "planned fault" : "unknown";
}

inline const std::vector<int> faults{0, 1, 2};

} // namespace ostrel::test
