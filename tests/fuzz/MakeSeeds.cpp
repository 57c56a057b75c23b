// Writes bundle files to begin fuzzing with into the folder that is the argument: archives of several kinds, alone and
// behind smallest shared objects of each class and byte order, and the same cut short.
#include "support/SmallElf.h"
#include "unit/ZipText.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>

using namespace ostrel::test;

namespace {

/// A record of the 64 bit format between directory and end record, whose numbers need not be true.
std::string withWideRecord(const std::string& zip)
{
    const auto end = zip.rfind("PK\x05\x06");
    std::string record{"PK\x06\x06\x2c\0\0\0\0\0\0\0\x2d\0\x2d\0", 16};
    record.resize(24, '\0');
    record += std::string{"\x01\0\0\0\0\0\0\0\x01\0\0\0\0\0\0\0", 16};
    record += std::string{"\x40\0\0\0\0\0\0\0\x20\0\0\0\0\0\0\0", 16};
    std::string locator{"PK\x06\x07\0\0\0\0", 8};
    for (int i = 0; i < 8; ++i) {
        locator += static_cast<char>(end >> 8 * i);
    }
    locator += std::string{"\x01\0\0\0", 4};
    return zip.substr(0, end) + record + locator + zip.substr(end);
}

void write(const std::filesystem::path& folder, const std::string& name, const std::string& bytes)
{
    std::ofstream out(folder / name, std::ios::binary);
    out << bytes;
    out.close();
    if (!out) {
        throw std::runtime_error{"cannot write " + (folder / name).string()};
    }
}

void writeSeeds(const std::filesystem::path& folder)
{
    const std::string one = bundleZip("n");
    const std::string two =
        zipText({{"a/", ""}, {"a/manifest.json", "{}"}, {"b/MANIFEST.json", "{}"}, {"b/x/manifest.json", "{}"}});
    const std::string root = zipText({{"manifest.json", "{}"}, {"a", "b"}}, "a comment");
    write(folder, "one.zip", one);
    write(folder, "two.zip", two);
    write(folder, "root.zip", root);
    write(folder, "none.zip", std::string{"PK\x05\x06"} + std::string(18, '\0'));
    write(folder, "in-zip.zip", zipText({{"n/manifest.json", "{}"}, {"n/resource.zip", one}}));
    write(folder, "wide.zip", withWideRecord(one));
    write(folder, "behind-text.zip", "#!/bin/sh\n" + two);
    write(folder, "cut.zip", one.substr(0, one.size() - 30));
    for (const bool wide : {false, true}) {
        for (const bool bigEndian : {false, true}) {
            const std::string object = SmallElf{wide, bigEndian}.bytes();
            SmallElf linked{wide, bigEndian};
            linked.sections = {{".us_resources", SHT_PROGBITS, one}, {".ostrel_bundle", SHT_PROGBITS, two}};
            const std::string name = std::string(wide ? "64" : "32") + (bigEndian ? "msb" : "lsb");
            write(folder, name + ".so", object);
            write(folder, name + "-bundle.so", object + one);
            write(folder, name + "-linked.so", linked.bytes());
            write(folder, name + "-cut.so", object.substr(0, object.size() - 1));
            write(folder, name + "-bundle-cut.so", object + two.substr(0, two.size() - 1));
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    try {
        if (argc != 2) {
            throw std::runtime_error{"usage: make_seeds FOLDER"};
        }
        std::filesystem::create_directories(argv[1]);
        writeSeeds(argv[1]);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
}
