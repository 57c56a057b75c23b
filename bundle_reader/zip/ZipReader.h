#pragma once

#include "bundle_reader/file/ByteSource.h"
#include "bundle_reader/zip/ZipEntry.h"

#include <zip.h>

#include <cstdint>
#include <exception>
#include <memory>
#include <string>

namespace ostrel::bundle_reader {

/// Why an archive or an entry cannot be read. Thrown within this folder alone: who catches it names the file.
struct ZipFault {
    std::string why;
};

/// An open archive. The one place that reads archives by libzip: its errors become exceptions here, memory that failed
/// std::bad_alloc, and what the source throws passes through.
///
/// Not to be used by two threads at once.
class ZipReader {
public:
    /// Reads the directory of the archive that lies from `begin` to `end` in the source, which must outlive this.
    ///
    /// @throws ZipFault when it cannot be read
    ZipReader(const ByteSource& source, std::uint64_t begin, std::uint64_t end);
    ZipReader(const ZipReader&) = delete;
    ZipReader& operator=(const ZipReader&) = delete;
    ~ZipReader();

    std::uint64_t count() const { return m_count; }

    /// @throws ZipFault when it has none
    std::string name(std::uint64_t index) const;

    /// @throws ZipFault when the directory does not tell
    ZipEntry entry(std::uint64_t index) const;

    /// The unpacked data. When there are more than `limit` bytes it stops somewhere behind them.
    ///
    /// @throws ZipFault when they are damaged, or packed or encrypted in a way that cannot be read
    std::string unpack(std::uint64_t index, std::uint64_t limit) const;

private:
    struct Source;
    struct Discard {
        void operator()(zip_t* archive) const { zip_discard(archive); }
    };

    [[noreturn]] void fail(zip_error_t* error) const;

    std::unique_ptr<Source> m_source; // before the archive, which reads it until it is closed
    std::unique_ptr<zip_t, Discard> m_archive;
    std::uint64_t m_count = 0;
};

} // namespace ostrel::bundle_reader
