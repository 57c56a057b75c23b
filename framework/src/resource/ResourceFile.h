#pragma once

#include "bundle_reader/BundleFile.h"
#include "bundle_reader/zip/ArchiveReader.h"
#include "resource/ResourceTable.h"

#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace cppmicroservices::detail::core {

/// The archive of a bundle file, open from the beginning so that removing or replacing the file changes nothing. That
/// of most bundles is small and kept in memory; the files of larger ones are open as long as not too many others are
/// read. Its directory is read when a resource is first asked for. Shared by the bundles that were installed from the
/// file together, and by their resources; it outlives their framework.
///
/// All functions may be called from any thread.
class ResourceFile {
public:
    struct Opened {
        explicit Opened(ostrel::bundle_reader::OpenArchive archive)
            : reader(std::move(archive)), table(reader.entries())
        {
        }
        ostrel::bundle_reader::ArchiveReader reader;
        ResourceTable table;
    };

    /// @param contents  what was found in the file when it was installed; the folders are not needed
    ResourceFile(std::string location, ostrel::bundle_reader::Contents const& contents);

    /// @throws std::runtime_error that names the file when it has no archive, or cannot be read; when its archive is a
    ///         larger one: also when it was removed or changed since
    /// @locks  the file's own, while it is opened
    std::shared_ptr<Opened const> open() const;

    /// True when the file at the location is still the one that was installed, and was not written to since.
    bool isUnchanged() const;

    /// False when it was a library that had been cut short before it was installed.
    bool wasWhole() const { return m_wasWhole; }

private:
    std::string const m_location;
    ostrel::bundle_reader::ArchivePlace const m_place;
    bool const m_hasArchive;
    bool const m_wasWhole;
    std::string m_path; // the location, independent of the current folder; of an archive that is not kept in memory
    mutable std::mutex m_mutex; // guards what follows
    mutable ostrel::bundle_reader::OpenArchive m_archive;
    mutable std::shared_ptr<Opened const> m_opened;
};

} // namespace cppmicroservices::detail::core
