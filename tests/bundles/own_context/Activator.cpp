#include "bundles/shared/OwnContext.h"

#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/GetBundleContext.h>

#include <memory>
#include <utility>

namespace {

using cppmicroservices::BundleContext;

class RealOwnContext final : public ostrel::test::OwnContext {
public:
    explicit RealOwnContext(BundleContext atConstruction) : m_atConstruction(std::move(atConstruction)) {}

    BundleContext atConstruction() const override { return m_atConstruction; }
    BundleContext now() const override { return cppmicroservices::GetBundleContext(); }

private:
    BundleContext m_atConstruction;
};

class Activator final : public cppmicroservices::BundleActivator {
public:
    void Start(BundleContext context) override
    {
        context.RegisterService<ostrel::test::OwnContext>(std::make_shared<RealOwnContext>(m_atConstruction));
    }

    void Stop(BundleContext) override {}

private:
    BundleContext m_atConstruction = cppmicroservices::GetBundleContext();
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Activator)
