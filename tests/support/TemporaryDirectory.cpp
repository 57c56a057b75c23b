#include "support/TemporaryDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace ostrel::test {

TemporaryDirectory::TemporaryDirectory()
{
    std::string name = (std::filesystem::temp_directory_path() / "ostrel-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::system_error{errno, std::generic_category(), "cannot make a directory like '" + name + "'"};
    }
    m_path = std::filesystem::canonical(name);
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::filesystem::path TemporaryDirectory::write(const std::string& fileName, const std::string& content) const
{
    const std::filesystem::path file = m_path / fileName;
    std::ofstream stream{file, std::ios::binary};
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    if (!stream) {
        throw std::runtime_error{"cannot write '" + file.string() + "'"};
    }
    return file;
}

std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream stream{file, std::ios::binary};
    if (!stream) {
        throw std::runtime_error{"cannot read '" + file.string() + "'"};
    }
    return {std::istreambuf_iterator<char>{stream}, std::istreambuf_iterator<char>{}};
}

} // namespace ostrel::test
