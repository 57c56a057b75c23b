#pragma once

#include "cppmicroservices/FrameworkExport.h"

#include <ios>
#include <streambuf>
#include <string>

namespace cppmicroservices {

class BundleResource;

namespace detail {

/// The data of a resource in memory, for reading and seeking.
class US_Framework_EXPORT BundleResourceBuffer : public std::streambuf {
public:
    BundleResourceBuffer();
    BundleResourceBuffer(BundleResourceBuffer const&) = delete;
    BundleResourceBuffer& operator=(BundleResourceBuffer const&) = delete;
    ~BundleResourceBuffer() override;

protected:
    /// Takes over the data of the resource; none for a folder or an invalid one.
    ///
    /// @return false when the data cannot be read
    bool load(BundleResource const& resource, std::ios_base::openmode mode);

    pos_type seekoff(off_type offset, std::ios_base::seekdir way, std::ios_base::openmode which) override;
    pos_type seekpos(pos_type position, std::ios_base::openmode which) override;

private:
    std::string m_data;
};

} // namespace detail

} // namespace cppmicroservices
