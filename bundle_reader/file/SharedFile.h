#pragma once

#include "bundle_reader/file/ByteSource.h"
#include "bundle_reader/file/FileBytes.h"

#include <list>
#include <memory>
#include <string>

namespace ostrel::bundle_reader {

/// So many files of SharedFile are open at once at most, while none is just being read.
inline constexpr std::size_t sharedFileLimit = 16;

/// A file that is read now and then, as one of many: all of them together keep few files open. One that was closed for
/// another is opened again when it is read.
///
/// All functions may be called from any thread.
class SharedFile : public ByteSource {
public:
    /// Opens the file, which must still be the one of the stamp.
    ///
    /// @throws std::runtime_error with the reason alone when it cannot be opened, or is not that file any more
    SharedFile(std::string path, const FileStamp& stamp);
    ~SharedFile() override;

    std::uint64_t size() const override { return m_stamp.size; }

    /// A file that was removed or replaced is read all the same while it is open.
    ///
    /// @throws std::runtime_error with the reason alone when the file was written to; when it was closed for another
    ///         and was removed, replaced or changed since; or when it cannot be read
    /// @locks  the one of all shared files, though not while anything is read
    std::size_t read(std::uint64_t offset, char* to, std::size_t length) const override;

private:
    using File = std::shared_ptr<const FileBytes>;

    struct OpenFiles;

    static OpenFiles& openFiles();
    File opened() const;
    File use() const;

    const std::string m_path;
    const FileStamp m_stamp;
    // Guarded by the lock of the open files. Its place in their list while it is open:
    mutable File m_file;
    mutable std::list<const SharedFile*>::iterator m_place;
};

} // namespace ostrel::bundle_reader
