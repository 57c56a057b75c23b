#pragma once

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>

namespace bench {

/// A running framework in which one real bundle has registered `count` services; nothing is loaded.
class FrameworkWithServices {
public:
    explicit FrameworkWithServices(int count);
    ~FrameworkWithServices();

    FrameworkWithServices(const FrameworkWithServices&) = delete;
    FrameworkWithServices& operator=(const FrameworkWithServices&) = delete;

    cppmicroservices::BundleContext context() const { return m_framework.GetBundleContext(); }

private:
    cppmicroservices::Framework m_framework;
};

} // namespace bench
