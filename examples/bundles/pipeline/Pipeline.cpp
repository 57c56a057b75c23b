#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/ServiceReference.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <text/Services.h>
#include <utility>

namespace {

using cppmicroservices::BundleContext;
using cppmicroservices::ServiceReference;

/// Looks its steps up anew for each text. Most of them are registered by bundles that start after this one, and any of
/// them may stop at any time, so nothing is gained by looking in Start().
class Pipeline final : public text::Pipeline {
public:
    explicit Pipeline(BundleContext context) : m_context(std::move(context)) {}

    std::string polish(const std::string& text) const override
    {
        std::string result = text;
        for (const auto& reference : m_context.GetServiceReferences<text::Step>()) { // highest ranking first
            if (const std::shared_ptr<text::Step> step = obtain(reference)) {
                result = step->apply(result);
            }
        }
        return result;
    }

private:
    /// Null if the step went away since it was looked up, or if its factory has none to give.
    std::shared_ptr<text::Step> obtain(const ServiceReference<text::Step>& reference) const
    {
        try {
            return m_context.GetService(reference);
        } catch (const std::invalid_argument&) {
            return nullptr;
        }
    }

    // Calls on a context are safe from any thread; they do not change the object.
    mutable BundleContext m_context;
};

class Activator final : public cppmicroservices::BundleActivator {
public:
    void Start(BundleContext context) override
    {
        context.RegisterService<text::Pipeline>(std::make_shared<Pipeline>(context));
    }

    void Stop(BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Activator)
