#pragma once

#include "container/MicroServicesContainer.h"
#include "support/Threads.h"

#include <chrono>
#include <memory>
#include <vector>

namespace ostrel::test {

/// Looks from another thread whether a container's mutex can be had, also while the asking thread holds it itself.
///
/// A test that expects the mutex to be held looks for a glance; one that expects it to be free has patience, so that a
/// busy machine does not make it fail.
///
/// A look that finds the mutex held leaves a thread waiting for it, which the destructor sees out; so a probe must go
/// after the operation that it looks at has returned, and before the container.
class LockProbe {
public:
    explicit LockProbe(const ostrel::us_container::MicroServicesContainer& container,
                       std::chrono::milliseconds limit = glance)
        : m_container(container), m_limit(limit)
    {
    }

    void look()
    {
        m_threads.push_back(
            std::make_unique<OtherThread>([&container = m_container] { container.listManuallyLoadedBundles(); }));
        m_found.push_back(m_threads.back()->finishesWithin(m_limit) ? Found::free : Found::held);
    }

    enum class Found { free, held };
    /// What each look found, in order.
    const std::vector<Found>& found() const { return m_found; }

    static constexpr Found free = Found::free;
    static constexpr Found held = Found::held;

private:
    const ostrel::us_container::MicroServicesContainer& m_container;
    std::chrono::milliseconds m_limit;
    std::vector<std::unique_ptr<OtherThread>> m_threads;
    std::vector<Found> m_found;
};

} // namespace ostrel::test
