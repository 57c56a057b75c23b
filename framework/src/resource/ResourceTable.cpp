#include "resource/ResourceTable.h"

#include <algorithm>

namespace cppmicroservices::detail::core {

namespace {

std::string folded(std::string name)
{
    // Not by locale: what a bundle finds must not depend on its host's.
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return name;
}

/// The name of the folder in which the entry lies; empty at the archive's root.
std::string parentOf(std::string const& name)
{
    if (name.size() < 2) {
        return {};
    }
    auto const slash = name.rfind('/', name.size() - 2); // a folder's own name ends in one
    return slash == std::string::npos ? std::string() : name.substr(0, slash + 1);
}

} // namespace

ResourceTable::ResourceTable(std::vector<Entry> const& entries)
{
    m_nodes.reserve(entries.size());
    for (std::size_t position = 0; position < entries.size(); ++position) {
        m_nodes.push_back({entries[position], position, {}});
    }
    // Of several entries of one name the last is taken, as unpacking the archive would leave it.
    std::sort(m_nodes.begin(), m_nodes.end(), [](Item const& a, Item const& b) {
        int const order = a.entry.name.compare(b.entry.name);
        return order != 0 ? order < 0 : a.position > b.position;
    });
    m_nodes.erase(std::unique(m_nodes.begin(), m_nodes.end(),
                              [](Item const& a, Item const& b) { return a.entry.name == b.entry.name; }),
                  m_nodes.end());
    for (Node node = 0; node < m_nodes.size(); ++node) {
        auto const& name = m_nodes[node].entry.name;
        m_byFoldedName.emplace(folded(name), node);
        if (auto const parent = findExactly(parentOf(name))) {
            m_nodes[*parent].children.push_back(node);
        }
    }
}

std::optional<ResourceTable::Node> ResourceTable::findExactly(std::string const& name) const
{
    auto const found = std::lower_bound(m_nodes.begin(), m_nodes.end(), name,
                                        [](Item const& item, std::string const& key) { return item.entry.name < key; });
    if (found == m_nodes.end() || found->entry.name != name) {
        return std::nullopt;
    }
    return static_cast<Node>(found - m_nodes.begin());
}

std::optional<ResourceTable::Node> ResourceTable::find(std::string const& name) const
{
    if (auto const exact = findExactly(name)) {
        return exact;
    }
    auto const found = m_byFoldedName.find(folded(name));
    return found == m_byFoldedName.end() ? std::nullopt : std::optional<Node>(found->second);
}

} // namespace cppmicroservices::detail::core
