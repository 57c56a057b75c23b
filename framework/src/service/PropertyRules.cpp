#include "service/PropertyRules.h"

#include "cppmicroservices/Constants.h"
#include "cppmicroservices/ServiceInterface.h"

#include <stdexcept>
#include <utility>

namespace cppmicroservices::core {

namespace {

void add(AnyMap& properties, std::string const& key, Any const& value)
{
    if (!properties.insert({key, value}).second) {
        throw std::runtime_error("Properties contain case variants of the key: " + key);
    }
}

int rankingIn(AnyMap const& properties)
{
    auto const found = properties.find(Constants::SERVICE_RANKING);
    if (found == properties.cend()) {
        return 0;
    }
    auto const* const ranking = any_cast<int>(&found->second);
    if (ranking == nullptr) {
        throw std::invalid_argument("The property service.ranking must be an int, but is of type " +
                                    detail::GetDemangledName(found->second.Type()));
    }
    return *ranking;
}

} // namespace

RegisteredProperties propertiesAtRegistration(ServiceProperties const& given, long id,
                                              std::vector<std::string> const& objectClass, std::string const& scope)
{
    RegisteredProperties result{AnyMap(any_map::UNORDERED_MAP_CASEINSENSITIVE_KEYS), id, 0};
    for (auto const& [key, value] : given) {
        add(result.all, key, value);
    }
    if (auto const own = given.find(Constants::SERVICE_ID); own != given.end()) {
        result.shownId = any_cast<long>(own->second);
    } else {
        add(result.all, Constants::SERVICE_ID, id);
    }
    if (auto const own = given.find(Constants::OBJECTCLASS); own != given.end()) {
        any_cast<std::vector<std::string>>(own->second); // throws for another type
    } else {
        add(result.all, Constants::OBJECTCLASS, objectClass);
    }
    if (given.count(Constants::SERVICE_SCOPE) == 0) {
        add(result.all, Constants::SERVICE_SCOPE, scope);
    }
    result.ranking = rankingIn(result.all);
    return result;
}

RegisteredProperties propertiesReplaced(ServiceProperties const& given, AnyMap const& old)
{
    RegisteredProperties result{AnyMap(any_map::UNORDERED_MAP_CASEINSENSITIVE_KEYS), 0, 0};
    for (auto const* key : {&Constants::SERVICE_ID, &Constants::OBJECTCLASS, &Constants::SERVICE_SCOPE}) {
        result.all.insert({*key, old.find(*key)->second});
    }
    for (auto const& [key, value] : given) {
        if (key == Constants::SERVICE_ID || key == Constants::OBJECTCLASS || key == Constants::SERVICE_SCOPE) {
            continue;
        }
        add(result.all, key, value);
    }
    result.shownId = any_cast<long>(old.find(Constants::SERVICE_ID)->second);
    result.ranking = rankingIn(result.all);
    return result;
}

} // namespace cppmicroservices::core
