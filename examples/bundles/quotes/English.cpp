#include "Quotes.h"

#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Constants.h>

#include <memory>
#include <string>

namespace {

class Activator final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        context.RegisterService<text::Step>(
            std::make_shared<Quotes>("\u201c", "\u201d"),
            {{cppmicroservices::Constants::SERVICE_RANKING, 200}, {"language", std::string{"en"}}});
    }

    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Activator)
