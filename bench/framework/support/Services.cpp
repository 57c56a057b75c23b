#include "support/Services.h"

#include <map>
#include <string>

namespace bench {

namespace {

class Numbered final : public Thing {
public:
    explicit Numbered(int number) : m_number(number) {}
    int number() const override { return m_number; }

private:
    int m_number;
};

std::map<int, std::unique_ptr<Services>>& allServices()
{
    static std::map<int, std::unique_ptr<Services>> all;
    return all;
}

} // namespace

Services::Services(int count) : m_context(m_framework.context())
{
    m_objects.reserve(static_cast<std::size_t>(count));
    m_registrations.resize(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        m_objects.push_back(std::make_shared<Numbered>(i));
        registerAgain(i);
    }
}

cppmicroservices::ServiceProperties Services::propertiesOf(int which)
{
    return {{"kind", std::string("kind") + std::to_string(which % 10)},
            {"size", which % 100},
            {"name", std::string("thing number ") + std::to_string(which)},
            {"enabled", which % 2 == 0}};
}

long Services::id(int which)
{
    return cppmicroservices::any_cast<long>(reference(which).GetProperty("service.id"));
}

void Services::registerAgain(int which)
{
    auto const at = static_cast<std::size_t>(which);
    m_registrations[at] = m_context.RegisterService<Thing>(m_objects[at], propertiesOf(which));
}

Services& services(int count)
{
    auto& found = allServices()[count];
    if (!found) {
        found = std::make_unique<Services>(count);
    }
    return *found;
}

void removeAllServices()
{
    allServices().clear();
}

} // namespace bench
