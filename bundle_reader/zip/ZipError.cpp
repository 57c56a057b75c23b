#include "bundle_reader/zip/ZipError.h"

#include <cerrno>
#include <new>

namespace ostrel::bundle_reader {

void beginCall()
{
    errno = 0;
}

std::string zipReason(zip_error_t& error)
{
    if (zip_error_code_zip(&error) == ZIP_ER_MEMORY || errno == ENOMEM) {
        throw std::bad_alloc{};
    }
    return zip_error_strerror(&error);
}

} // namespace ostrel::bundle_reader
