#pragma once

#include "bundle_reader/zip/ArchiveReader.h"

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace cppmicroservices::detail::core {

/// The entries of one bundle file as a tree. Does not change once it is made, so it needs no lock.
///
/// Only what has an entry of its own is there: a folder that is nothing but a part of other entries' names is not.
class ResourceTable {
public:
    using Entry = ostrel::bundle_reader::ArchiveReader::Entry;
    using Node = std::size_t;

    explicit ResourceTable(std::vector<Entry> const& entries);

    /// By an entry's whole name: the entry of just this name, else one whose letters A to Z differ in case.
    std::optional<Node> find(std::string const& name) const;
    /// The entry of just this name.
    std::optional<Node> findExactly(std::string const& name) const;

    Entry const& entry(Node node) const { return m_nodes[node].entry; }
    /// Where the archive's directory has it.
    std::size_t position(Node node) const { return m_nodes[node].position; }
    /// What lies directly in a folder, in ascending byte order of name.
    std::vector<Node> const& children(Node node) const { return m_nodes[node].children; }

private:
    struct Item {
        Entry entry;
        std::size_t position;
        std::vector<Node> children;
    };

    std::vector<Item> m_nodes; // in ascending byte order of name
    std::unordered_map<std::string, Node> m_byFoldedName;
};

} // namespace cppmicroservices::detail::core
