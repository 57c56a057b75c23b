#include "cppmicroservices/BundleResourceStream.h"

#include "resource/ResourceData.h"

#include "cppmicroservices/BundleResource.h"

#include <stdexcept>

namespace cppmicroservices {

namespace detail {

BundleResourceBuffer::BundleResourceBuffer() = default;
BundleResourceBuffer::~BundleResourceBuffer() = default;

bool BundleResourceBuffer::load(BundleResource const& resource, std::ios_base::openmode mode)
{
    auto const& found = detail::core::ResourceAccess::data(resource);
    if (!found || resource.IsDir()) {
        return true;
    }
    auto const& file = *found->file;
    try {
        m_data = file.reader.read(file.table.position(found->node));
    } catch (std::runtime_error const&) {
        return false;
    }
    if ((mode & std::ios_base::binary) == 0 && !m_data.empty() && m_data.back() == '\n') {
        m_data.pop_back();
    }
    setg(m_data.data(), m_data.data(), m_data.data() + m_data.size());
    return true;
}

BundleResourceBuffer::pos_type BundleResourceBuffer::seekoff(off_type offset, std::ios_base::seekdir way,
                                                             std::ios_base::openmode /*which*/)
{
    off_type const size = egptr() - eback();
    off_type const from = way == std::ios_base::beg ? 0 : way == std::ios_base::end ? size : gptr() - eback();
    if (offset < -from || offset > size - from) {
        return pos_type(off_type(-1));
    }
    setg(eback(), eback() + from + offset, egptr());
    return pos_type(from + offset);
}

BundleResourceBuffer::pos_type BundleResourceBuffer::seekpos(pos_type position, std::ios_base::openmode which)
{
    return seekoff(off_type(position), std::ios_base::beg, which);
}

} // namespace detail

BundleResourceStream::BundleResourceStream(BundleResource const& resource, std::ios_base::openmode mode)
    : std::istream(static_cast<detail::BundleResourceBuffer*>(this))
{
    if (!load(resource, mode)) {
        setstate(std::ios_base::badbit);
    }
}

} // namespace cppmicroservices
