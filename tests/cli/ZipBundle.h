#pragma once

#include "support/MemoryZip.h"

#include <string>

namespace ostrel::test {

/// The file of a bundle without code, whose name may have any bytes.
inline std::string zipBundle(const std::string& symbolicName, const std::string& manifest)
{
    return zipInMemory([&](zip_t* archive) {
        const std::string entry = symbolicName + "/manifest.json";
        zip_source_t* const source = zip_source_buffer(archive, manifest.data(), manifest.size(), 0);
        if (zip_file_add(archive, entry.c_str(), source, ZIP_FL_ENC_GUESS) < 0) {
            zip_source_free(source);
            throw std::runtime_error{"zipBundle: cannot add '" + entry + "'"};
        }
    });
}

} // namespace ostrel::test
