#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <text/Services.h>

namespace {

class Statistics final : public text::Statistics {
public:
    text::Counts count(const std::string& text) const override
    {
        text::Counts counts{};
        counts.bytes = text.size();
        counts.lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
        std::istringstream words{text};
        for (std::string word; words >> word;) {
            ++counts.words;
        }
        return counts;
    }
};

class Activator final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        context.RegisterService<text::Statistics>(std::make_shared<Statistics>());
    }

    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Activator)
