#include "ldap/PropertyTable.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace cppmicroservices::detail::ldap {

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

PropertyTable::PropertyTable(Map map) : m_map(std::move(map))
{
    if (m_map.size() > few) {
        for (const auto& property : m_map) {
            m_byName.emplace(property.first, &property.second);
        }
        return;
    }
    m_entries.reserve(m_map.size());
    for (const auto& property : m_map) {
        m_entries.push_back({markOf(property.first), &property});
    }
}

bool PropertyTable::Entry::isNamed(const std::string& name) const
{
    // Most names are asked for as they are spelt, which is quicker to see.
    return property->first == name || detail::any_map_ciequal{}(property->first, name);
}

const Any* PropertyTable::find(const std::string& name, std::uint32_t mark) const
{
    if (m_entries.empty()) {
        const auto found = m_byName.find(name);
        return found != m_byName.end() ? found->second : nullptr;
    }
    for (const Entry& entry : m_entries) {
        if (entry.mark == mark && entry.isNamed(name)) {
            return &entry.property->second;
        }
    }
    return nullptr;
}

const std::string* PropertyTable::variant() const
{
    if (m_entries.empty()) {
        // Of names that differ by case alone only the first is there.
        if (m_byName.size() == m_map.size()) {
            return nullptr;
        }
        std::unordered_set<const Any*> firsts; // of several
        for (const auto& [name, value] : m_map) {
            if (const Any* const first = m_byName.at(name); first != &value) {
                firsts.insert(first);
            }
        }
        return &std::find_if(m_map.begin(), m_map.end(), [&firsts](const auto& property) {
                    return firsts.count(&property.second) != 0;
                })->first;
    }
    for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry) {
        const std::string& name = entry->property->first;
        const auto isVariant = [&](const Entry& other) { return other.mark == entry->mark && other.isNamed(name); };
        if (std::any_of(std::next(entry), m_entries.end(), isVariant)) {
            return &name;
        }
    }
    return nullptr;
}

} // namespace cppmicroservices::detail::ldap
