#include "ldap/PropertyTable.h"

#include "ldap/MapAccess.h"

namespace cppmicroservices::ldap {

namespace {

/// Of more properties than this, one is found sooner by its hash.
constexpr std::size_t few = 32;

std::uint32_t folded(char c)
{
    return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

} // namespace

std::uint32_t markOf(std::string_view name)
{
    if (name.empty()) {
        return 0;
    }
    return static_cast<std::uint32_t>(name.size()) << 24 | folded(name.front()) << 16 |
           folded(name[name.size() / 2]) << 8 | folded(name.back());
}

PropertyTable::PropertyTable(AnyMap map) : m_map(std::move(map))
{
    if (m_map.size() > few) {
        return;
    }
    m_entries.reserve(m_map.size());
    for (const auto& property : static_cast<const AnyMap&>(m_map)) {
        m_entries.push_back({markOf(property.first), &property});
    }
}

const Any* PropertyTable::find(const std::string& name, std::uint32_t mark) const
{
    if (m_entries.empty()) {
        return MapAccess::findIgnoringCase(m_map, name);
    }
    for (const Entry& entry : m_entries) {
        if (entry.mark != mark) {
            continue;
        }
        // Most names are asked for as they are spelt, which is quicker to see.
        if (entry.property->first == name || detail::any_map_ciequal{}(entry.property->first, name)) {
            return &entry.property->second;
        }
    }
    return nullptr;
}

} // namespace cppmicroservices::ldap
