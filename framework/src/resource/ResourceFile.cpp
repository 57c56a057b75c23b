#include "resource/ResourceFile.h"

#include <exception>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace cppmicroservices::detail::core {

namespace {

std::string absolute(std::string const& location)
{
    std::error_code error;
    auto const path = std::filesystem::absolute(location, error);
    return error ? location : path.string();
}

} // namespace

ResourceFile::ResourceFile(std::string location, ostrel::bundle_reader::Contents contents)
    : m_location(std::move(location)), m_path(absolute(m_location)), m_contents(std::move(contents))
{
    if (m_contents.moreFiles) {
        try {
            m_opened = std::make_shared<Opened const>(m_path, m_contents);
        } catch (std::exception const&) {
            m_opened = nullptr; // who asks for a resource is told
        }
    }
}

std::shared_ptr<ResourceFile::Opened const> ResourceFile::open() const
{
    if (m_contents.archive != ostrel::bundle_reader::Archive::readable) {
        throw std::runtime_error("Could not init zip archive for bundle at " + m_location);
    }
    std::lock_guard<std::mutex> const lock(m_mutex);
    if (!m_opened) {
        m_opened = std::make_shared<Opened const>(m_path, m_contents);
    }
    return m_opened;
}

bool ResourceFile::isUnchanged() const
{
    return m_contents.stamp != ostrel::bundle_reader::FileStamp() &&
           m_contents.stamp == ostrel::bundle_reader::stampOf(m_location);
}

} // namespace cppmicroservices::detail::core
