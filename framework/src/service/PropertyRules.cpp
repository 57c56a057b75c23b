#include "service/PropertyRules.h"

#include "cppmicroservices/Constants.h"

#include <stdexcept>
#include <utility>

namespace cppmicroservices::detail::core {

namespace {

using detail::ldap::PropertyTable;

std::shared_ptr<PropertyTable const> tableOf(ServiceProperties&& properties)
{
    auto table = std::make_shared<PropertyTable const>(std::move(properties));
    if (auto const* const name = table->variant()) {
        throw std::runtime_error("Properties contain case variants of the key: " + *name);
    }
    return table;
}

} // namespace

// The order in which properties are added counts: references tell the names in that of the resulting hash map.

RegisteredProperties propertiesAtRegistration(ServiceProperties const& given, long id,
                                              std::vector<std::string> const& objectClass, std::string const& scope)
{
    auto properties = given;
    if (auto const [own, isNew] = properties.emplace(Constants::OBJECTCLASS, objectClass); !isNew) {
        any_cast<std::vector<std::string>>(own->second); // throws for another type
    }
    auto const shownId = properties.emplace(Constants::SERVICE_ID, id).first;
    RegisteredProperties result;
    result.shownId = any_cast<long>(shownId->second);
    properties.emplace(Constants::SERVICE_SCOPE, scope);
    result.all = tableOf(std::move(properties));
    auto const* const ranking = any_cast<int>(result.all->find(Constants::SERVICE_RANKING));
    result.ranking = ranking != nullptr ? *ranking : 0;
    return result;
}

RegisteredProperties propertiesReplaced(ServiceProperties const& given, ServiceProperties const& old)
{
    auto properties = given;
    for (auto const* key : {&Constants::SERVICE_ID, &Constants::SERVICE_SCOPE, &Constants::OBJECTCLASS}) {
        properties[*key] = old.at(*key);
    }
    RegisteredProperties result;
    result.shownId = any_cast<long>(old.at(Constants::SERVICE_ID));
    result.all = tableOf(std::move(properties));
    if (auto const* const ranking = result.all->find(Constants::SERVICE_RANKING)) {
        try {
            result.ranking = any_cast<int>(*ranking);
        } catch (BadAnyCastException const& e) {
            throw std::invalid_argument(std::string("SERVICE_RANKING property has unexpected value type. ") + e.what());
        }
    }
    return result;
}

} // namespace cppmicroservices::detail::core
