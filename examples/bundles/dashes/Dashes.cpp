#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Constants.h>

#include <memory>
#include <string>
#include <text/Services.h>

namespace {

/// Turns "--" into a dash, unless there are more hyphens than two: those draw a line.
class Dashes final : public text::Step {
public:
    std::string apply(const std::string& text) const override
    {
        std::string result;
        std::size_t position = 0;
        while (position < text.size()) {
            const std::size_t hyphens = hyphensAt(text, position);
            if (hyphens == 2) {
                result += "\u2013";
            } else {
                result.append(text, position, hyphens == 0 ? 1 : hyphens);
            }
            position += hyphens == 0 ? 1 : hyphens;
        }
        return result;
    }

private:
    static std::size_t hyphensAt(const std::string& text, std::size_t position)
    {
        const std::size_t end = text.find_first_not_of('-', position);
        return (end == std::string::npos ? text.size() : end) - position;
    }
};

class Activator final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        context.RegisterService<text::Step>(std::make_shared<Dashes>(),
                                            {{cppmicroservices::Constants::SERVICE_RANKING, 100}});
    }

    void Stop(cppmicroservices::BundleContext) override {} // the framework unregisters what a stopping bundle left
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Activator)
