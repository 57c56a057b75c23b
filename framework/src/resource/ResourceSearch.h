#pragma once

#include "cppmicroservices/BundleResource.h"

#include <memory>
#include <string>
#include <vector>

namespace cppmicroservices::detail::core {

class ResourceFile;

/// See Bundle::GetResource(); `folder` is the bundle's folder in the file.
BundleResource getResource(ResourceFile const& file, std::string const& folder, std::string const& path);

/// See Bundle::FindResources().
std::vector<BundleResource> findResources(ResourceFile const& file, std::string const& folder, std::string path,
                                          std::string const& pattern, bool recurse);

} // namespace cppmicroservices::detail::core
