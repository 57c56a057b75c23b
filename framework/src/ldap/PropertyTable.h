#pragma once

#include "cppmicroservices/AnyMap.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace cppmicroservices::detail::ldap {

/// Differs for most names, is the same for names that differ by the case of ASCII letters alone: the length, and the
/// first, the middle and the last letter.
std::uint32_t markOf(std::string_view name);

/// Properties that never change, laid out so that many can be looked through quickly: a name is looked for among the
/// marks of all names, which lie side by side, and compared letter by letter only where the marks agree. No hash is
/// computed, and the nodes of the map are not visited.
class PropertyTable {
public:
    using Map = any_map::unordered_any_map;

    explicit PropertyTable(Map map);

    // Refers to its own map.
    PropertyTable(const PropertyTable&) = delete;
    PropertyTable& operator=(const PropertyTable&) = delete;

    /// The properties in their order, which is that of the map from which the table was made.
    const Map& map() const { return m_map; }

    /// The value of the property of that name, its case disregarded; null when there is none.
    ///
    /// @param mark  of the name
    /// @cost        linear in the number of properties, up to a few; else one look-up by hash
    const Any* find(const std::string& name, std::uint32_t mark) const;
    const Any* find(const std::string& name) const { return find(name, markOf(name)); }

    /// The first name that another one differs from by its case alone; null when there is none, as should be.
    const std::string* variant() const;

private:
    struct Entry {
        std::uint32_t mark;
        const Map::value_type* property;

        bool isNamed(const std::string& name) const;
    };

    Map m_map;
    std::vector<Entry> m_entries; // empty where looking in m_byName is quicker
    std::unordered_map<std::string, const Any*, detail::any_map_cihash, detail::any_map_ciequal> m_byName;
};

} // namespace cppmicroservices::detail::ldap
