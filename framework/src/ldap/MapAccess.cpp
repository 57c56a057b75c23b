#include "ldap/MapAccess.h"

#include <algorithm>
#include <stdexcept>
#include <type_traits>

namespace cppmicroservices::detail::ldap {

namespace {

template <class Map>
constexpr bool ignoresCase = std::is_same_v<Map, any_map::unordered_any_cimap>;

/// Up to this many keys are compared pair by pair, which needs no memory.
constexpr std::size_t few = 16;

[[noreturn]] void throwVariants(const std::string& key)
{
    throw std::runtime_error("Properties contain case variants of the key: " + key);
}

template <class Map>
void checkPairs(const Map& map)
{
    for (auto first = map.begin(); first != map.end(); ++first) {
        for (auto second = std::next(first); second != map.end(); ++second) {
            if (detail::any_map_ciequal{}(first->first, second->first)) {
                throwVariants(first->first);
            }
        }
    }
}

template <class Map>
void checkHashed(const Map& map)
{
    any_map::unordered_any_cimap seen(map.size());
    for (const auto& entry : map) {
        const auto [at, isNew] = seen.try_emplace(entry.first);
        if (!isNew) {
            throwVariants(at->first);
        }
    }
}

} // namespace

const Any* MapAccess::findIgnoringCase(const any_map& map, const std::string& key)
{
    return std::visit(
        [&key](const auto& entries) -> const Any* {
            if constexpr (ignoresCase<std::decay_t<decltype(entries)>>) {
                const auto found = entries.find(key);
                return found == entries.end() ? nullptr : &found->second;
            } else {
                const auto found = std::find_if(entries.begin(), entries.end(), [&key](const auto& entry) {
                    return detail::any_map_ciequal{}(entry.first, key);
                });
                return found == entries.end() ? nullptr : &found->second;
            }
        },
        map.m_map);
}

const Any* MapAccess::findExactly(const any_map& map, const std::string& key)
{
    return std::visit(
        [&key](const auto& entries) -> const Any* {
            const auto found = entries.find(key);
            return found == entries.end() || found->first != key ? nullptr : &found->second;
        },
        map.m_map);
}

void MapAccess::checkVariants(const any_map& map)
{
    std::visit(
        [](const auto& entries) {
            if constexpr (!ignoresCase<std::decay_t<decltype(entries)>>) {
                if (entries.size() <= few) {
                    checkPairs(entries);
                } else {
                    checkHashed(entries);
                }
            }
        },
        map.m_map);
}

} // namespace cppmicroservices::detail::ldap
