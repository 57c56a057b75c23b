#pragma once

#include "cppmicroservices/FrameworkExport.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace cppmicroservices {

namespace detail::core {
class ResourceAccess;
struct ResourceData;
} // namespace detail::core

/// A file or folder in the archive of a bundle; see Bundle::GetResource() and Bundle::FindResources().
///
/// A resource remains usable after its bundle was uninstalled, its framework stopped and its file removed. Copies are
/// cheap. All members but the assignment may be called from any thread, and none but the copying ones throw anything
/// other than std::bad_alloc. Those that tell about the data tell what the archive's directory says.
class US_Framework_EXPORT BundleResource {
public:
    /// An invalid resource: its texts are empty, its numbers 0; it is no folder, hence a file.
    BundleResource();
    BundleResource(BundleResource const& resource);
    ~BundleResource() = default;
    BundleResource& operator=(BundleResource const& resource) = default;

    /// By GetResourcePath() alone.
    bool operator<(BundleResource const& resource) const;

    /// Equal when both are of the same bundle and have the same GetResourcePath(), or are both invalid.
    bool operator==(BundleResource const& resource) const;
    bool operator!=(BundleResource const& resource) const;

    bool IsValid() const;
    explicit operator bool() const;

    /// The last part of the path: "archive.tar.gz" of "/data/archive.tar.gz"; empty for a folder.
    std::string GetName() const;

    /// The path up to the name: "/data/".
    std::string GetPath() const;

    /// The whole path from the bundle's folder on, "/data/archive.tar.gz", with a slash behind a folder.
    std::string GetResourcePath() const;

    /// The name up to the first dot: "archive".
    std::string GetBaseName() const;

    /// The name up to the last dot: "archive.tar".
    std::string GetCompleteBaseName() const;

    /// The name behind the last dot: "gz"; empty without a dot.
    std::string GetSuffix() const;

    /// The name behind the first dot: "tar.gz"; empty without a dot.
    std::string GetCompleteSuffix() const;

    bool IsDir() const;
    bool IsFile() const;

    /// The names of what lies directly in a folder, in ascending byte order; those of folders end in a slash.
    std::vector<std::string> GetChildren() const;

    /// As GetChildren(), as resources.
    std::vector<BundleResource> GetChildResources() const;

    /// The size of the data in bytes; the largest int for more than that.
    int GetSize() const;

    /// The size that the data take up in the archive.
    int GetCompressedSize() const;

    /// When the data were last changed; archives keep it in local time, in steps of two seconds.
    time_t GetLastModified() const;

    std::uint32_t GetCrc32() const;

private:
    friend class detail::core::ResourceAccess;
    friend struct ::std::hash<BundleResource>;

    explicit BundleResource(std::shared_ptr<detail::core::ResourceData const> data);
    std::size_t Hash() const;

    std::shared_ptr<detail::core::ResourceData const> m_data;
};

/// Writes GetResourcePath().
US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, BundleResource const& resource);

} // namespace cppmicroservices

// clang-format off
US_HASH_FUNCTION_BEGIN(cppmicroservices::BundleResource)
    return arg.Hash();
US_HASH_FUNCTION_END
// clang-format on
