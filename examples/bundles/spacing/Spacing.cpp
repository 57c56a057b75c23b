#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Constants.h>

#include <memory>
#include <string>
#include <text/Services.h>

namespace {

/// Leaves one blank where there are several, and none at either end of a line.
class Spacing final : public text::Step {
public:
    std::string apply(const std::string& text) const override
    {
        std::string result;
        bool pending = false;
        for (const char c : text) {
            if (c == ' ' || c == '\t') {
                pending = true;
                continue;
            }
            if (pending && c != '\n' && !result.empty() && result.back() != '\n') {
                result += ' ';
            }
            result += c;
            pending = false;
        }
        return result;
    }
};

class Activator final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        context.RegisterService<text::Step>(std::make_shared<Spacing>(),
                                            {{cppmicroservices::Constants::SERVICE_RANKING, 300}});
    }

    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Activator)
