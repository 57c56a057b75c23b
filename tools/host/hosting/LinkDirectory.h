#pragma once

#include <platform/Utf16Path.h>

#include <map>
#include <set>
#include <string>

namespace ostrel::host {

/// A directory of links to some files of another one, by their names there; removed with its links at the end.
class LinkDirectory {
public:
    /// Makes it in the directory for temporary files.
    /// @throws Problem (internal) when that fails
    explicit LinkDirectory(const std::set<std::string>& files);
    LinkDirectory(const LinkDirectory&) = delete;
    LinkDirectory& operator=(const LinkDirectory&) = delete;
    ~LinkDirectory();

    const platform::Utf16Path& path() const { return m_wide; }

    /// Whether there is a link to the file at that canonical path.
    bool has(const std::string& file) const { return m_links.count(file) != 0; }

    /// Removes the link to the file at that canonical path.
    /// @return false when there is none
    bool remove(const std::string& file);

private:
    std::string m_path;
    platform::Utf16Path m_wide;
    std::map<std::string, std::string> m_links; // canonical path of the file to path of the link
};

} // namespace ostrel::host
