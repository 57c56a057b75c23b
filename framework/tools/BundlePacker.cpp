/// Packs the manifests of one bundle file into the zip archive that the framework looks for in it.
///
/// usage: ostrel_bundle_packer <archive> <symbolic name> <manifest> [<symbolic name> <manifest>]...
///
/// The archive's bytes depend on nothing but the names and the manifests, so that a build can be repeated.

#include <zip.h>

#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

struct Bundle {
    std::string name;
    std::string manifest; ///< the file's bytes
};

std::string readFile(const std::string& path)
{
    std::ifstream file{path, std::ios::binary};
    std::string bytes{std::istreambuf_iterator<char>{file}, {}};
    if (!file) {
        throw std::runtime_error{"cannot read the manifest '" + path + "'"};
    }
    return bytes;
}

struct ArchiveDiscarder {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
using Archive = std::unique_ptr<zip_t, ArchiveDiscarder>;

Archive create(const std::string& path)
{
    int code = 0;
    Archive archive{zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code)};
    if (!archive) {
        zip_error_t error;
        zip_error_init_with_code(&error, code);
        const std::string why = zip_error_strerror(&error);
        zip_error_fini(&error);
        throw std::runtime_error{"cannot create the archive '" + path + "': " + why};
    }
    return archive;
}

/// Gives an entry the earliest time that the format knows, in place of the time of the build.
void finishEntry(const Archive& archive, zip_int64_t index)
{
    constexpr zip_uint16_t firstOfJanuary1980 = (1 << 5) | 1;
    if (index < 0 ||
        zip_file_set_dostime(archive.get(), static_cast<zip_uint64_t>(index), 0, firstOfJanuary1980, 0) != 0) {
        throw std::runtime_error{std::string{"cannot add an entry to the archive: "} + zip_strerror(archive.get())};
    }
}

/// The archive refers to the bundle's bytes until it is closed.
void add(const Archive& archive, const Bundle& bundle)
{
    finishEntry(archive, zip_dir_add(archive.get(), (bundle.name + "/").c_str(), ZIP_FL_ENC_UTF_8));

    zip_source_t* const source = zip_source_buffer(archive.get(), bundle.manifest.data(), bundle.manifest.size(), 0);
    if (source == nullptr) {
        throw std::runtime_error{std::string{"cannot read from memory: "} + zip_strerror(archive.get())};
    }
    const zip_int64_t index =
        zip_file_add(archive.get(), (bundle.name + "/manifest.json").c_str(), source, ZIP_FL_ENC_UTF_8);
    if (index < 0) {
        zip_source_free(source);
    }
    finishEntry(archive, index);
}

void pack(const std::string& path, const std::vector<Bundle>& bundles)
{
    Archive archive = create(path);
    for (const auto& bundle : bundles) {
        add(archive, bundle);
    }
    if (zip_close(archive.get()) != 0) {
        throw std::runtime_error{"cannot write the archive '" + path + "': " + zip_strerror(archive.get())};
    }
    static_cast<void>(archive.release()); // closing has freed it
}

} // namespace

int main(int argc, char* argv[])
{
    try {
        const std::vector<std::string> arguments{argv + 1, argv + argc};
        if (arguments.size() < 3 || arguments.size() % 2 == 0) {
            std::cerr << "usage: ostrel_bundle_packer <archive> <symbolic name> <manifest>"
                         " [<symbolic name> <manifest>]...\n";
            return EXIT_FAILURE;
        }
        std::vector<Bundle> bundles;
        for (std::size_t i = 1; i < arguments.size(); i += 2) {
            bundles.push_back({arguments[i], readFile(arguments[i + 1])});
        }
        pack(arguments.front(), bundles);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << "ostrel_bundle_packer: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
