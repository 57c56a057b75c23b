#pragma once

#include "bundle_reader/zip/ArchiveReader.h"
#include "bundle_reader/BundleFile.h"
#include "resource/ResourceTable.h"

#include <memory>
#include <mutex>
#include <string>

namespace cppmicroservices::detail::core {

/// The archive of a bundle file. It is open from the beginning when it has resources, so that removing or replacing the
/// file changes nothing; when it has nothing but manifests, as most have, it is opened when one of them is first asked
/// for: an open file each would soon be too many. Shared by the bundles that were installed from it together,
/// and by their resources; it outlives their framework.
///
/// All functions may be called from any thread.
class ResourceFile {
public:
    struct Opened {
        explicit Opened(std::string const& location, ostrel::bundle_reader::Contents const& contents)
            : reader(location, contents), table(reader.entries())
        {
        }
        ostrel::bundle_reader::ArchiveReader reader;
        ResourceTable table;
    };

    /// @param contents  what was found in the file when it was installed; the folders are not needed
    ResourceFile(std::string location, ostrel::bundle_reader::Contents contents);

    /// @throws std::runtime_error that names the file when it has no archive, was removed or changed before it was
    ///         opened, or cannot be read
    /// @locks  the file's own, while it is opened
    std::shared_ptr<Opened const> open() const;

    /// True when the file at the location is still the one that was installed, and was not written to since.
    bool isUnchanged() const;

    /// False when it was a library that had been cut short before it was installed.
    bool wasWhole() const { return !m_contents.truncated; }

private:
    std::string const m_location;
    std::string const m_path; // the same, but independent of the current folder
    ostrel::bundle_reader::Contents const m_contents;
    mutable std::mutex m_mutex; // guards m_opened
    mutable std::shared_ptr<Opened const> m_opened;
};

} // namespace cppmicroservices::detail::core
