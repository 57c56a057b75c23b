#include "contract/resource/ResourceFixture.h"

#include "support/MemoryZip.h"

#include <ctime>
#include <stdexcept>

namespace ostrel::test {

namespace {

constexpr zip_uint16_t packedDate = ((2020 - 1980) << 9) | (2 << 5) | 3;
constexpr zip_uint16_t packedClock = (4 << 11) | (5 << 5) | (6 / 2);

void add(zip_t* archive, const PackedEntry& entry)
{
    zip_int64_t index = -1;
    if (entry.name.back() == '/') {
        index = zip_dir_add(archive, entry.name.c_str(), ZIP_FL_ENC_UTF_8);
    } else {
        zip_source_t* const source = zip_source_buffer(archive, entry.content.data(), entry.content.size(), 0);
        index = zip_file_add(archive, entry.name.c_str(), source, ZIP_FL_ENC_UTF_8);
        zip_set_file_compression(archive, static_cast<zip_uint64_t>(index),
                                 entry.pack == Pack::stored ? ZIP_CM_STORE : ZIP_CM_DEFLATE, 0);
    }
    if (index < 0 || zip_file_set_dostime(archive, static_cast<zip_uint64_t>(index), packedClock, packedDate, 0) != 0) {
        throw std::runtime_error{zip_strerror(archive)};
    }
}

} // namespace

std::string archiveOf(const std::vector<PackedEntry>& entries)
{
    return zipInMemory([&entries](zip_t* archive) {
        for (const auto& entry : entries) {
            add(archive, entry);
        }
    });
}

std::time_t packedTime()
{
    std::tm time{};
    time.tm_year = 2020 - 1900;
    time.tm_mon = 1;
    time.tm_mday = 3;
    time.tm_hour = 4;
    time.tm_min = 5;
    time.tm_sec = 6;
    time.tm_isdst = -1;
    return std::mktime(&time);
}

std::string manifestOf(const std::string& name)
{
    return R"({"bundle.symbolic_name": ")" + name + "\"}";
}

ResourceFixture::ResourceFixture()
{
    alpha = install("both.zip", {{"alpha/", ""},
                                 {"alpha/manifest.json", manifestOf("alpha")},
                                 {"alpha/zeta.txt", "zeta\n"},
                                 {"alpha/archive.tar.gz", "abcdefghij"},
                                 {"alpha/Zebra.txt", "Z", Pack::stored},
                                 {"alpha/.hidden", "h"},
                                 {"alpha/trail.", "t"},
                                 {"alpha/noext", std::string(1000, 'x')},
                                 {"alpha/empty.dat", ""},
                                 {"alpha/dir/", ""},
                                 {"alpha/dir/b.txt", "b"},
                                 {"alpha/dir/a.TXT", "a"},
                                 {"alpha/dir/sub/", ""},
                                 {"alpha/dir/sub/f.txt", "f"},
                                 {"alpha/void/", ""},
                                 {"alpha/implicit/deep/file.txt", "deep"},
                                 {"alpha/sp ace/\xc3\xbc.txt", "u"},
                                 {"beta/", ""},
                                 {"beta/manifest.json", manifestOf("beta")},
                                 {"beta/zeta.txt", "of beta"}});
    beta = context.GetBundles(alpha.GetLocation()).back();
}

cppmicroservices::Bundle ResourceFixture::install(const std::string& fileName, const std::vector<PackedEntry>& entries)
{
    return context.InstallBundles(directory.write(fileName, archiveOf(entries)).string()).front();
}

std::vector<std::string> pathsOf(const std::vector<cppmicroservices::BundleResource>& resources)
{
    std::vector<std::string> paths;
    for (const auto& resource : resources) {
        paths.push_back(resource.GetResourcePath());
    }
    return paths;
}

} // namespace ostrel::test
