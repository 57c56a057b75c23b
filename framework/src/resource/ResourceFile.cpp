#include "resource/ResourceFile.h"

#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace cppmicroservices::detail::core {

namespace {

std::string absolute(std::string const& location)
{
    std::error_code error;
    auto const path = std::filesystem::absolute(location, error);
    return error ? location : path.string();
}

} // namespace

ResourceFile::ResourceFile(std::string location, ostrel::bundle_reader::Contents const& contents)
    : m_location(std::move(location)),
      m_place(contents.place),
      m_hasArchive(contents.archive == ostrel::bundle_reader::Archive::readable),
      m_wasWhole(!contents.truncated)
{
    if (m_hasArchive && !m_place.kept) {
        m_path = absolute(m_location);
        try {
            m_archive = openArchive(m_path, m_place);
        } catch (std::runtime_error const&) {
            m_archive = {}; // who asks for a resource is told
        }
    }
}

std::shared_ptr<ResourceFile::Opened const> ResourceFile::open() const
{
    if (!m_hasArchive) {
        throw std::runtime_error("Could not init zip archive for bundle at " + m_location);
    }
    std::lock_guard<std::mutex> const lock(m_mutex);
    if (!m_opened) {
        if (!m_archive.bytes) {
            m_archive = openArchive(m_place.kept ? m_location : m_path, m_place);
        }
        m_opened = std::make_shared<Opened const>(m_archive);
    }
    return m_opened;
}

bool ResourceFile::isUnchanged() const
{
    return m_place.stamp != ostrel::bundle_reader::FileStamp() &&
           m_place.stamp == ostrel::bundle_reader::stampOf(m_location);
}

} // namespace cppmicroservices::detail::core
