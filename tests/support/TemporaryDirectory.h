#pragma once

#include <filesystem>
#include <string>

namespace ostrel::test {

/// An empty directory of its own, removed with everything in it at the end. Its path is canonical.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    const std::filesystem::path& path() const { return m_path; }

    /// Writes a file with exactly this content.
    std::filesystem::path write(const std::string& fileName, const std::string& content) const;

private:
    std::filesystem::path m_path;
};

/// All bytes of a file.
std::string contentOf(const std::filesystem::path& file);

} // namespace ostrel::test
