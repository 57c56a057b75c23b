#pragma once

#include "contract/StartedFramework.h"
#include "support/TemporaryDirectory.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleResource.h>

#include <string>
#include <vector>

namespace ostrel::test {

enum class Pack { stored, deflated };

/// One entry of an archive; a folder's name ends in a slash.
struct PackedEntry {
    std::string name;
    std::string content;
    Pack pack = Pack::deflated;
};

/// The bytes of an archive with these entries, all last modified at packedTime.
std::string archiveOf(const std::vector<PackedEntry>& entries);

/// 2020-02-03 04:05:06 as the archive keeps it, read as local time.
std::time_t packedTime();

std::string manifestOf(const std::string& name);

/// A started framework and a bundle "alpha" with resources of all kinds, beside a bundle "beta" in the same file.
class ResourceFixture : public StartedFramework {
protected:
    ResourceFixture();

    /// Installs the bundles of an archive; the first one of them.
    cppmicroservices::Bundle install(const std::string& fileName, const std::vector<PackedEntry>& entries);

    TemporaryDirectory directory;
    cppmicroservices::Bundle alpha;
    cppmicroservices::Bundle beta;
};

std::vector<std::string> pathsOf(const std::vector<cppmicroservices::BundleResource>& resources);

} // namespace ostrel::test
