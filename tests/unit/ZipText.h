#pragma once

#include "support/MemoryZip.h"

#include <string>
#include <utility>
#include <vector>

namespace ostrel::test {

using ZipEntries = std::vector<std::pair<std::string, std::string>>;

/// The bytes of a zip archive with these entries (name, content), stored so that tests can find the content in it.
/// A name that ends in "/" is a folder entry.
inline std::string zipText(const ZipEntries& entries, const std::string& comment = {})
{
    return zipInMemory([&entries, &comment](zip_t* archive) {
        for (const auto& [name, content] : entries) {
            if (name.back() == '/') {
                zip_dir_add(archive, name.c_str(), 0);
                continue;
            }
            const auto index =
                zip_file_add(archive, name.c_str(), zip_source_buffer(archive, content.data(), content.size(), 0), 0);
            zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), ZIP_CM_STORE, 0);
        }
        zip_set_archive_comment(archive, comment.data(), static_cast<zip_uint16_t>(comment.size()));
    });
}

/// The manifest of a bundle.
inline std::string manifestText(const std::string& name, const std::string& version = "1.0.0")
{
    return R"({"bundle.symbolic_name": ")" + name + R"(", "bundle.version": ")" + version + R"("})";
}

/// A zip that holds one bundle.
inline std::string bundleZip(const std::string& name, const std::string& version = "1.0.0")
{
    return zipText({{name + "/manifest.json", manifestText(name, version)}});
}

} // namespace ostrel::test
