#pragma once

#include <zip.h>

#include <stdexcept>
#include <string>

namespace ostrel::test {

/// The bytes of a zip archive that `fill(zip_t*)` puts entries into. What these are made of has to last until then.
///
/// @throws std::runtime_error with libzip's text
template <class Fill>
std::string zipInMemory(Fill&& fill)
{
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* const target = zip_source_buffer_create(nullptr, 0, 0, &error);
    zip_t* const archive = zip_open_from_source(target, ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (archive == nullptr) {
        throw std::runtime_error{zip_error_strerror(&error)};
    }
    zip_source_keep(target);
    fill(archive);
    if (zip_close(archive) != 0) {
        throw std::runtime_error{zip_strerror(archive)};
    }
    zip_stat_t status;
    zip_source_stat(target, &status);
    std::string bytes(status.size, '\0');
    zip_source_open(target);
    zip_source_read(target, bytes.data(), bytes.size());
    zip_source_close(target);
    zip_source_free(target);
    return bytes;
}

} // namespace ostrel::test
