#pragma once

#include "resource/ResourceFile.h"

#include <memory>
#include <string>
#include <utility>

namespace cppmicroservices {

class BundleResource;

namespace detail::core {

/// What a valid BundleResource stands for.
struct ResourceData {
    std::shared_ptr<ResourceFile::Opened const> file;
    std::string folder; // the bundle's, without a slash
    std::string path;   // as it was asked for, from the bundle's folder on, beginning with a slash
    ResourceTable::Node node;

    ResourceTable::Entry const& entry() const { return file->table.entry(node); }
};

/// The passage between BundleResource and what is behind it.
class ResourceAccess {
public:
    static BundleResource resource(ResourceData data);
    static std::shared_ptr<ResourceData const> const& data(BundleResource const& resource);
};

} // namespace detail::core

} // namespace cppmicroservices
