#pragma once

#include "cppmicroservices/detail/BundleResourceBuffer.h"

#include <fstream>
#include <istream>
#include <memory>

namespace cppmicroservices {

class BundleResource;

/// Reads the data of a resource.
///
/// The data are unpacked into memory when the stream is made. The stream is empty for a folder and an invalid resource,
/// and bad() when the data are damaged, larger than 1 GiB, or were written to since the bundle was installed.
class US_Framework_EXPORT BundleResourceStream : private detail::BundleResourceBuffer, public std::istream {
public:
    BundleResourceStream(BundleResourceStream const&) = delete;
    BundleResourceStream& operator=(BundleResourceStream const&) = delete;

    /// @param mode  without std::ios_base::binary a newline at the very end of the data is left out; all else that it
    ///              may say is ignored
    /// @throws std::bad_alloc
    /// @locks  that of the bundle's file while the data are unpacked
    BundleResourceStream(BundleResource const& resource, std::ios_base::openmode mode = std::ios_base::in);
};

} // namespace cppmicroservices
