#include "cppmicroservices/BundleResource.h"

#include "resource/ResourceData.h"

#include <algorithm>
#include <limits>
#include <ostream>
#include <utility>

namespace cppmicroservices {

namespace {

std::string const& pathOf(std::shared_ptr<detail::core::ResourceData const> const& data)
{
    static std::string const none;
    return data ? data->path : none;
}

int asInt(std::uint64_t size)
{
    return static_cast<int>(std::min<std::uint64_t>(size, std::numeric_limits<int>::max()));
}

} // namespace

BundleResource::BundleResource() = default;
BundleResource::BundleResource(BundleResource const& resource) = default;

BundleResource::BundleResource(std::shared_ptr<detail::core::ResourceData const> data) : m_data(std::move(data)) {}

bool BundleResource::operator<(BundleResource const& resource) const
{
    return pathOf(m_data) < pathOf(resource.m_data);
}

bool BundleResource::operator==(BundleResource const& resource) const
{
    if (!m_data || !resource.m_data) {
        return m_data == resource.m_data;
    }
    return m_data->file == resource.m_data->file && m_data->folder == resource.m_data->folder &&
           m_data->path == resource.m_data->path;
}

bool BundleResource::operator!=(BundleResource const& resource) const
{
    return !(*this == resource);
}

bool BundleResource::IsValid() const
{
    return m_data != nullptr;
}

BundleResource::operator bool() const
{
    return IsValid();
}

std::string BundleResource::GetName() const
{
    auto const& path = pathOf(m_data);
    return path.substr(path.rfind('/') + 1); // all of an invalid one's empty path, as the sum is 0 then
}

std::string BundleResource::GetPath() const
{
    auto const& path = pathOf(m_data);
    return path.substr(0, path.rfind('/') + 1);
}

std::string BundleResource::GetResourcePath() const
{
    return pathOf(m_data);
}

std::string BundleResource::GetBaseName() const
{
    auto const name = GetName();
    return name.substr(0, name.find('.'));
}

std::string BundleResource::GetCompleteBaseName() const
{
    auto const name = GetName();
    return name.substr(0, name.rfind('.'));
}

std::string BundleResource::GetSuffix() const
{
    auto const name = GetName();
    auto const dot = name.rfind('.');
    return dot == std::string::npos ? std::string() : name.substr(dot + 1);
}

std::string BundleResource::GetCompleteSuffix() const
{
    auto const name = GetName();
    auto const dot = name.find('.');
    return dot == std::string::npos ? std::string() : name.substr(dot + 1);
}

bool BundleResource::IsDir() const
{
    auto const& path = pathOf(m_data);
    return !path.empty() && path.back() == '/';
}

bool BundleResource::IsFile() const
{
    return !IsDir();
}

std::vector<std::string> BundleResource::GetChildren() const
{
    std::vector<std::string> names;
    if (m_data) {
        auto const& table = m_data->file->table;
        for (auto const child : table.children(m_data->node)) {
            names.push_back(table.entry(child).name.substr(m_data->entry().name.size()));
        }
    }
    return names;
}

std::vector<BundleResource> BundleResource::GetChildResources() const
{
    std::vector<BundleResource> resources;
    if (m_data) {
        auto const& table = m_data->file->table;
        for (auto const child : table.children(m_data->node)) {
            resources.push_back(detail::core::ResourceAccess::resource(
                {m_data->file, m_data->folder, table.entry(child).name.substr(m_data->folder.size()), child}));
        }
    }
    return resources;
}

int BundleResource::GetSize() const
{
    return m_data ? asInt(m_data->entry().size) : 0;
}

int BundleResource::GetCompressedSize() const
{
    return m_data ? asInt(m_data->entry().packedSize) : 0;
}

time_t BundleResource::GetLastModified() const
{
    return m_data ? m_data->entry().lastModified : 0;
}

std::uint32_t BundleResource::GetCrc32() const
{
    return m_data ? m_data->entry().crc : 0;
}

std::size_t BundleResource::Hash() const
{
    return std::hash<std::string>()(m_data ? m_data->folder + m_data->path : std::string());
}

std::ostream& operator<<(std::ostream& os, BundleResource const& resource)
{
    return os << resource.GetResourcePath();
}

namespace detail::core {

BundleResource ResourceAccess::resource(ResourceData data)
{
    return BundleResource(std::make_shared<ResourceData const>(std::move(data)));
}

std::shared_ptr<ResourceData const> const& ResourceAccess::data(BundleResource const& resource)
{
    return resource.m_data;
}

} // namespace detail::core

} // namespace cppmicroservices
