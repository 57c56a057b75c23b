#include <cppmicroservices/Any.h>
#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/ServiceProperties.h>

#include <memory>
#include <ostream>
#include <stdexcept>

namespace unreadable_service {

/// Fault: writing it throws.
struct Value {
    bool operator==(const Value& /*other*/) const { return true; }
    bool operator!=(const Value& /*other*/) const { return false; }
    bool operator<(const Value& /*other*/) const { return false; }
};

std::ostream& operator<<(std::ostream& /*stream*/, const Value& /*value*/)
{
    throw std::runtime_error{"planned fault: unreadable_service"};
}

struct Service {
    virtual ~Service() = default;
};

} // namespace unreadable_service

namespace {

class Activator final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        cppmicroservices::ServiceProperties properties;
        properties["value"] = unreadable_service::Value{};
        context.RegisterService<unreadable_service::Service>(std::make_shared<unreadable_service::Service>(),
                                                             properties);
    }

    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Activator)
