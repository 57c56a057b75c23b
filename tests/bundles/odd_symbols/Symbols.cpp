// A library whose bundles are named by the one who installs it: each has another fault in the functions that the
// framework looks for.
#include <cppmicroservices/BundleActivator.h>

#include <stdexcept>

namespace {

class Quiet final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext) override {}
    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

// The names are dictated by the framework.
// NOLINTBEGIN(readability-identifier-naming)
extern "C" {

US_ABI_EXPORT cppmicroservices::BundleActivator* _us_create_activator_no_destroy();
US_ABI_EXPORT cppmicroservices::BundleActivator* _us_create_activator_returns_null();
US_ABI_EXPORT void _us_destroy_activator_returns_null(cppmicroservices::BundleActivator* activator);
US_ABI_EXPORT cppmicroservices::BundleActivator* _us_create_activator_no_slot();
US_ABI_EXPORT void _us_destroy_activator_no_slot(cppmicroservices::BundleActivator* activator);
US_ABI_EXPORT cppmicroservices::BundleActivator* _us_create_activator_destroy_throws();
US_ABI_EXPORT void _us_destroy_activator_destroy_throws(cppmicroservices::BundleActivator* activator);
US_ABI_EXPORT cppmicroservices::BundleActivator* _us_create_activator_slot_throws();
US_ABI_EXPORT void _us_destroy_activator_slot_throws(cppmicroservices::BundleActivator* activator);
US_ABI_EXPORT void _us_set_bundle_context_instance_slot_throws(void* context);

cppmicroservices::BundleActivator* _us_create_activator_no_destroy()
{
    return new Quiet;
}

cppmicroservices::BundleActivator* _us_create_activator_returns_null()
{
    return nullptr;
}

void _us_destroy_activator_returns_null(cppmicroservices::BundleActivator* activator)
{
    delete activator;
}

cppmicroservices::BundleActivator* _us_create_activator_no_slot()
{
    return new Quiet;
}

void _us_destroy_activator_no_slot(cppmicroservices::BundleActivator* activator)
{
    delete activator;
}

cppmicroservices::BundleActivator* _us_create_activator_destroy_throws()
{
    return new Quiet;
}

void _us_destroy_activator_destroy_throws(cppmicroservices::BundleActivator* activator)
{
    delete activator;
    throw std::runtime_error("planned fault: destroy");
}

cppmicroservices::BundleActivator* _us_create_activator_slot_throws()
{
    return new Quiet;
}

void _us_destroy_activator_slot_throws(cppmicroservices::BundleActivator* activator)
{
    delete activator;
}

void _us_set_bundle_context_instance_slot_throws(void* context)
{
    throw std::runtime_error(context != nullptr ? "planned fault: set" : "planned fault: reset");
}

} // extern "C"
// NOLINTEND(readability-identifier-naming)
