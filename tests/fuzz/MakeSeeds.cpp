// Writes bundle files to begin fuzzing with into the folder that is the argument: archives of several kinds, alone and
// behind smallest shared objects of each class and byte order, and the same cut short.
#include "unit/ZipText.h"

#include <cstdint>
#include <cstdio>
#include <elf.h>
#include <exception>
#include <filesystem>
#include <fstream>

using namespace ostrel::test;

namespace {

/// The bytes of a shared object that has nothing but a dynamic segment, which needs one library.
class SharedObject {
public:
    SharedObject(bool wide, bool bigEndian) : m_wide(wide), m_bigEndian(bigEndian) {}

    std::string bytes()
    {
        const std::uint64_t headers = m_wide ? sizeof(Elf64_Ehdr) : sizeof(Elf32_Ehdr);
        const std::uint64_t entry = m_wide ? sizeof(Elf64_Phdr) : sizeof(Elf32_Phdr);
        const std::uint64_t dynamic = headers + 2 * entry;
        const std::uint64_t pair = 2 * (m_wide ? 8 : 4);
        const std::uint64_t names = dynamic + 4 * pair;
        const std::string table{"\0libneeded.so\0", 14};

        m_bytes = std::string{"\x7f"
                              "ELF"} +
                  char(m_wide ? ELFCLASS64 : ELFCLASS32) + char(m_bigEndian ? ELFDATA2MSB : ELFDATA2LSB) +
                  char(EV_CURRENT);
        m_bytes.resize(EI_NIDENT, '\0');
        add(2, ET_DYN).add(2, 0).add(4, EV_CURRENT).word(0).word(headers).word(0);
        add(4, 0).add(2, headers).add(2, entry).add(2, 2).add(2, 0).add(2, 0).add(2, 0);
        segment(PT_LOAD, 0, names + table.size());
        segment(PT_DYNAMIC, dynamic, names - dynamic);
        word(DT_NEEDED).word(1).word(DT_STRTAB).word(names).word(DT_STRSZ).word(table.size()).word(DT_NULL).word(0);
        return m_bytes + table;
    }

private:
    SharedObject& add(int width, std::uint64_t number)
    {
        for (int i = 0; i < width; ++i) {
            m_bytes += static_cast<char>(number >> 8 * (m_bigEndian ? width - 1 - i : i));
        }
        return *this;
    }

    SharedObject& word(std::uint64_t number) { return add(m_wide ? 8 : 4, number); }

    void segment(std::uint64_t type, std::uint64_t offset, std::uint64_t size)
    {
        add(4, type);
        if (m_wide) {
            add(4, PF_R);
        }
        word(offset).word(offset).word(offset).word(size).word(size);
        if (!m_wide) {
            add(4, PF_R);
        }
        word(1);
    }

    bool m_wide;
    bool m_bigEndian;
    std::string m_bytes;
};

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
            const std::string object = SharedObject(wide, bigEndian).bytes();
            const std::string name = std::string(wide ? "64" : "32") + (bigEndian ? "msb" : "lsb");
            write(folder, name + ".so", object);
            write(folder, name + "-bundle.so", object + one);
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
