// Any bytes as a bundle file whose resources are read: the reader that unpacks entries one by one finds what the first
// look at the file found.
#include "bundle_reader/BundleFile.h"
#include "bundle_reader/zip/ArchiveReader.h"
#include "fuzz/FuzzTarget.h"

#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>
#include <strings.h>
#include <sys/mman.h>
#include <unistd.h>

using namespace ostrel;
using namespace ostrel::bundle_reader;

namespace {

/// A file that lies in memory alone.
class MemoryFile {
public:
    MemoryFile() : m_descriptor(::memfd_create("input", MFD_CLOEXEC))
    {
        fuzz::require(m_descriptor >= 0, "a file in memory can be made");
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { ::close(m_descriptor); }

    void write(const std::uint8_t* data, std::size_t size) const
    {
        const bool written =
            ::ftruncate(m_descriptor, 0) == 0 && ::pwrite(m_descriptor, data, size, 0) == static_cast<ssize_t>(size);
        fuzz::require(written, "a file in memory can be written");
    }

    std::string path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

private:
    int m_descriptor;
};

std::optional<std::string> unpacked(const ArchiveReader& reader, std::size_t entry)
{
    try {
        return reader.read(entry);
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

/// The first entry that is the manifest of the folder.
std::optional<std::size_t> manifestOf(const ArchiveReader& reader, const std::string& folder)
{
    const auto& entries = reader.entries();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::string& name = entries[i].name;
        if (name.compare(0, folder.size() + 1, folder + "/") == 0 &&
            ::strcasecmp(name.c_str() + folder.size() + 1, "manifest.json") == 0) {
            return i;
        }
    }
    return std::nullopt;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const MemoryFile file;
    file.write(data, size);
    const Contents contents = read(file.path());
    if (contents.archive != Archive::readable) {
        return 0;
    }
    const ArchiveReader reader(openArchive(file.path(), contents.place));
    for (std::size_t i = 0; i < reader.entries().size(); ++i) {
        const auto bytes = unpacked(reader, i);
        fuzz::require(!bytes || bytes->size() == reader.entries()[i].size, "what is read has the promised size");
    }
    for (const Folder& folder : contents.folders) {
        const auto entry = manifestOf(reader, folder.name);
        fuzz::require(entry.has_value() == folder.manifest.has_value(), "both find the same manifests");
        fuzz::require(!entry || unpacked(reader, *entry) == folder.manifest, "both read the same manifests");
    }
    return 0;
}
