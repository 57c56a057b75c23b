#include "service/PropertyRules.h"

#include "cppmicroservices/Constants.h"

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

/// The ranking as it is given; null when there is none.
Any const* rankingIn(AnyMap const& properties)
{
    auto const found = properties.find(Constants::SERVICE_RANKING);
    return found != properties.cend() ? &found->second : nullptr;
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
    auto const* const ranking = any_cast<int>(rankingIn(result.all));
    result.ranking = ranking != nullptr ? *ranking : 0;
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
    if (auto const* const ranking = rankingIn(result.all)) {
        try {
            result.ranking = any_cast<int>(*ranking);
        } catch (BadAnyCastException const& e) {
            throw std::invalid_argument(std::string("SERVICE_RANKING property has unexpected value type. ") + e.what());
        }
    }
    return result;
}

} // namespace cppmicroservices::core
