#include "resource/ResourceSearch.h"

#include "resource/NamePattern.h"
#include "resource/ResourceData.h"
#include "resource/ResourceFile.h"

#include <cstddef>

namespace cppmicroservices::detail::core {

namespace {

using Node = ResourceTable::Node;

/// With one slash in front, and one wherever several stand together.
std::string withSingleSlashes(std::string const& path)
{
    std::string result = "/";
    for (char const c : path) {
        if (c != '/' || result.back() != '/') {
            result += c;
        }
    }
    return result;
}

struct Search {
    std::shared_ptr<ResourceFile::Opened const> file;
    std::string const& folder;
    NamePattern pattern;
    bool recurse;
    std::vector<BundleResource> found;

    /// A folder comes after what is in it. Not by recursion: names come from a file, and may nest as they like.
    void below(Node top)
    {
        struct Level {
            Node folder;
            std::size_t next;
        };
        std::vector<Level> levels{{top, 0}};
        while (!levels.empty()) {
            auto& level = levels.back();
            auto const& children = file->table.children(level.folder);
            if (level.next == children.size()) {
                if (levels.size() > 1) {
                    add(level.folder, levels[levels.size() - 2].folder);
                }
                levels.pop_back();
                continue;
            }
            Node const child = children[level.next++];
            if (recurse && file->table.entry(child).name.back() == '/') {
                levels.push_back({child, 0});
            } else {
                add(child, level.folder);
            }
        }
    }

    void add(Node node, Node parent)
    {
        auto const& name = file->table.entry(node).name;
        if (pattern.matches(std::string_view(name).substr(file->table.entry(parent).name.size()))) {
            found.push_back(ResourceAccess::resource({file, folder, name.substr(folder.size()), node}));
        }
    }
};

} // namespace

BundleResource getResource(ResourceFile const& file, std::string const& folder, std::string const& path)
{
    auto opened = file.open();
    auto asked = withSingleSlashes(path);
    auto node = opened->table.find(folder + asked);
    // The letters' case does not matter in what the bundle holds; a bundle whose name differs by it is another one.
    if (!node || opened->table.entry(*node).name.compare(0, folder.size(), folder) != 0) {
        return {};
    }
    return ResourceAccess::resource({std::move(opened), folder, std::move(asked), *node});
}

std::vector<BundleResource> findResources(ResourceFile const& file, std::string const& folder, std::string path,
                                          std::string const& pattern, bool recurse)
{
    auto opened = file.open();
    if (path.empty() || path.front() != '/') {
        path.insert(path.begin(), '/');
    }
    if (path.back() != '/') {
        path += '/';
    }
    auto const top = opened->table.findExactly(folder + path);
    if (!top) {
        return {};
    }
    Search search{std::move(opened), folder, NamePattern(pattern), recurse, {}};
    search.below(*top);
    return std::move(search.found);
}

} // namespace cppmicroservices::detail::core
