#include "hosting/LinkDirectory.h"

#include "frame/Problem.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace ostrel::host {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& path, int error)
{
    throw Problem{ExitStatus::internal,
                  {"a directory of links cannot be made",
                   path,
                   {std::generic_category().message(error)},
                   "make room there, or let TMPDIR name a directory that can be written"}};
}

std::string made()
{
    std::error_code error;
    const fs::path parent = fs::temp_directory_path(error);
    std::string path = (error ? fs::path{"/tmp"} : parent) / "ostrel-host-XXXXXX";
    if (::mkdtemp(path.data()) == nullptr) {
        fail(path, errno);
    }
    return path;
}

} // namespace

LinkDirectory::LinkDirectory(const std::set<std::string>& files) : m_path{made()}, m_wide{platform::toUtf16(m_path)}
{
    for (const std::string& file : files) {
        std::error_code error;
        const std::string target = fs::canonical(file, error);
        const std::string link = m_path + file.substr(file.rfind('/'));
        if (error || ::symlink(target.c_str(), link.c_str()) != 0) {
            const int reason = error ? error.value() : errno;
            fs::remove_all(m_path, error);
            fail(link, reason);
        }
        m_links.emplace(target, link);
    }
}

LinkDirectory::~LinkDirectory()
{
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

bool LinkDirectory::remove(const std::string& file)
{
    const auto link = m_links.find(file);
    if (link == m_links.end()) {
        return false;
    }
    ::unlink(link->second.c_str());
    m_links.erase(link);
    return true;
}

} // namespace ostrel::host
