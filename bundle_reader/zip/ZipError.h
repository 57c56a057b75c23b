#pragma once

#include <zip.h>

#include <string>

namespace ostrel::bundle_reader {

/// Where a function of libzip writes why it failed.
struct ZipError {
    ZipError() { zip_error_init(&value); }
    ZipError(const ZipError&) = delete;
    ZipError& operator=(const ZipError&) = delete;
    ~ZipError() { zip_error_fini(&value); }

    zip_error_t value;
};

/// To be called before each function of libzip whose failure zipReason() is to tell.
void beginCall();

/// The words of libzip for what failed since beginCall().
///
/// @throws std::bad_alloc when memory failed. libzip calls some of that a file which is no archive; the C library's
///         error number tells.
std::string zipReason(zip_error_t& error);

} // namespace ostrel::bundle_reader
