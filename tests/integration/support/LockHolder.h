#pragma once

#include "container/MicroServicesContainer.h"
#include "integration/support/Services.h"
#include "support/Threads.h"

#include <cppmicroservices/BundleContext.h>

namespace ostrel::test {

/// Keeps a container's mutex held by another thread, by a load of a Dancer whose factory does not return.
class LockHolder {
public:
    LockHolder(ostrel::us_container::MicroServicesContainer& container, const cppmicroservices::BundleContext& context)
        : m_service(registerFactory<Dancer>(context,
                                            [this] {
                                                m_held.open();
                                                m_mayGo.waitFor();
                                                return newMap<Dancer>();
                                            })),
          m_thread([&container] { container.loadService(dancerName); })
    {
        m_held.waitFor();
    }
    LockHolder(const LockHolder&) = delete;
    LockHolder& operator=(const LockHolder&) = delete;
    ~LockHolder() { letGo(); }

    void letGo() { m_mayGo.open(); }

private:
    Latch m_held;
    Latch m_mayGo;
    ServiceReferenceU m_service;
    OtherThread m_thread;
};

} // namespace ostrel::test
