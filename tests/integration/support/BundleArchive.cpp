#include "integration/support/BundleArchive.h"

#include <zip.h>

#include <stdexcept>

namespace ostrel::test {

namespace {

void addEntry(zip_t* archive, const ArchivedBundle& bundle)
{
    zip_source_t* source = zip_source_buffer(archive, bundle.manifest.data(), bundle.manifest.size(), 0);
    const std::string name = bundle.symbolicName + "/manifest.json";
    if (source == nullptr || zip_file_add(archive, name.c_str(), source, ZIP_FL_ENC_UTF_8) < 0) {
        zip_source_free(source);
        throw std::runtime_error{"cannot add '" + name + "' to an archive: " + zip_strerror(archive)};
    }
}

} // namespace

ArchivedBundle bundleWith(const std::string& symbolicName, const std::string& zq)
{
    std::string manifest = R"({"bundle.symbolic_name": ")" + symbolicName + '"';
    if (!zq.empty()) {
        manifest += R"(, "zq": )" + zq;
    }
    return {symbolicName, manifest + "}"};
}

ArchivedBundle componentWith(const std::string& symbolicName, const std::string& componentName,
                             const std::string& filters)
{
    std::string zq = R"({"component": {"name": ")" + componentName + "\"}";
    if (!filters.empty()) {
        zq += R"(, "ostrelFilters": )" + filters;
    }
    return bundleWith(symbolicName, zq + "}");
}

std::string addArchive(const Host& host, const std::string& fileName, const std::vector<ArchivedBundle>& bundles)
{
    int error = 0;
    zip_t* archive = zip_open((host.directory() / fileName).c_str(), ZIP_CREATE | ZIP_EXCL, &error);
    if (archive == nullptr) {
        throw std::runtime_error{"cannot make the archive '" + fileName + "', libzip error " + std::to_string(error)};
    }
    try {
        for (const ArchivedBundle& bundle : bundles) {
            addEntry(archive, bundle);
        }
    } catch (...) {
        zip_discard(archive);
        throw;
    }
    if (zip_close(archive) != 0) {
        const std::string reason = zip_strerror(archive);
        zip_discard(archive);
        throw std::runtime_error{"cannot write the archive '" + fileName + "': " + reason};
    }
    return fileName;
}

} // namespace ostrel::test
