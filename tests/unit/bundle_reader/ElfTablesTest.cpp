#include "bundle_reader/BundleFile.h"
#include "unit/ZipText.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <elf.h>
#include <string>
#include <vector>

// Tables that no linker writes for a small library: made by hand, in this machine's byte order.

using namespace ostrel::bundle_reader;
using namespace ostrel::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the headers below say little endian");

template <class Part>
std::string bytesOf(const Part& part)
{
    return {reinterpret_cast<const char*>(&part), sizeof part};
}

template <class Part>
std::string bytesOf(const std::vector<Part>& parts)
{
    std::string bytes;
    for (const Part& part : parts) {
        bytes += bytesOf(part);
    }
    return bytes;
}

/// A shared object of 64 bits: header, program headers, section headers, then `data`.
struct Library {
    std::vector<Elf64_Phdr> segments;
    std::vector<Elf64_Shdr> sections;
    std::string data;
    bool countInSection = false; ///< the number of segments stands in the first section, as for more than 65534

    std::uint64_t dataAt() const
    {
        return sizeof(Elf64_Ehdr) + segments.size() * sizeof(Elf64_Phdr) + sections.size() * sizeof(Elf64_Shdr);
    }

    std::string bytes() const
    {
        Elf64_Ehdr header{};
        header.e_ident[EI_MAG0] = ELFMAG0;
        header.e_ident[EI_MAG1] = ELFMAG1;
        header.e_ident[EI_MAG2] = ELFMAG2;
        header.e_ident[EI_MAG3] = ELFMAG3;
        header.e_ident[EI_CLASS] = ELFCLASS64;
        header.e_ident[EI_DATA] = ELFDATA2LSB;
        header.e_ident[EI_VERSION] = EV_CURRENT;
        header.e_type = ET_DYN;
        header.e_phoff = sizeof header;
        header.e_phentsize = sizeof(Elf64_Phdr);
        header.e_phnum = static_cast<Elf64_Half>(countInSection ? PN_XNUM : segments.size());
        header.e_shoff = sizeof header + segments.size() * sizeof(Elf64_Phdr);
        header.e_shentsize = sizeof(Elf64_Shdr);
        header.e_shnum = static_cast<Elf64_Half>(sections.size());
        return bytesOf(header) + bytesOf(segments) + bytesOf(sections) + data;
    }
};

Elf64_Shdr section(Elf64_Word type, std::uint64_t offset, std::uint64_t size)
{
    Elf64_Shdr made{};
    made.sh_type = type;
    made.sh_offset = offset;
    made.sh_size = size;
    return made;
}

Elf64_Phdr segment(Elf64_Word type, std::uint64_t offset, std::uint64_t size)
{
    Elf64_Phdr made{};
    made.p_type = type;
    made.p_offset = offset;
    made.p_vaddr = offset;
    made.p_filesz = size;
    return made;
}

Elf64_Dyn dynamic(Elf64_Sxword tag, std::uint64_t value)
{
    Elf64_Dyn made{};
    made.d_tag = tag;
    made.d_un.d_val = value;
    return made;
}

/// A library that needs "libneeded.so", and has two segments. `entries` makes its dynamic entries, given where their
/// names lie and how long these are.
template <typename Entries>
std::string libraryThatNeeds(Library library, Entries entriesFor)
{
    library.segments.resize(2);
    const std::string names{"\0libneeded.so\0", 14};
    const std::uint64_t namesAt = library.dataAt();
    const std::vector<Elf64_Dyn> entries = entriesFor(namesAt, names.size());
    library.data = names + bytesOf(entries);
    library.segments[0] = segment(PT_LOAD, 0, namesAt + library.data.size());
    library.segments[1] = segment(PT_DYNAMIC, namesAt + names.size(), bytesOf(entries).size());
    return library.bytes();
}

/// The same, which says in its first section that it has `count` segments.
std::string libraryWithCountInSection(Elf64_Word count)
{
    Library library;
    library.countInSection = true;
    library.sections.push_back(section(SHT_NULL, 0, 0));
    library.sections.front().sh_info = count;
    return libraryThatNeeds(library, [](std::uint64_t namesAt, std::uint64_t size) {
        return std::vector<Elf64_Dyn>{dynamic(DT_NEEDED, 1), dynamic(DT_STRTAB, namesAt), dynamic(DT_STRSZ, size),
                                      dynamic(DT_NULL, 0)};
    });
}

TEST(ElfTables, GivenNoTableOfNames_WhenRead_ThenNothingIsNeeded)
{
    const std::string noPlace = libraryThatNeeds({}, [](std::uint64_t, std::uint64_t size) {
        return std::vector<Elf64_Dyn>{dynamic(DT_NEEDED, 1), dynamic(DT_STRSZ, size), dynamic(DT_NULL, 0)};
    });
    const std::string noSize = libraryThatNeeds({}, [](std::uint64_t namesAt, std::uint64_t) {
        return std::vector<Elf64_Dyn>{dynamic(DT_NEEDED, 0), dynamic(DT_STRTAB, namesAt), dynamic(DT_NULL, 0)};
    });

    EXPECT_TRUE(inspect(noPlace).needed.empty());
    EXPECT_TRUE(inspect(noSize).needed.empty());
}

TEST(ElfTables, GivenSectionWithoutBitsBehindTheEnd_WhenRead_ThenTheLibraryIsWhole)
{
    constexpr std::uint64_t gigabyte = std::uint64_t{1} << 30;
    Library library;
    library.sections = {section(SHT_NULL, 0, 0), section(SHT_NOBITS, 64, gigabyte)};

    const Contents contents = inspect(library.bytes());

    EXPECT_EQ(contents.format, Format::elf);
    EXPECT_FALSE(contents.truncated) << contents.damage;
}

TEST(ElfTables, GivenSectionWithBitsBehindTheEnd_WhenRead_ThenTheLibraryIsTruncated)
{
    Library library;
    library.sections = {section(SHT_NULL, 0, 0), section(SHT_PROGBITS, 64, 4096)};

    const Contents contents = inspect(library.bytes());

    EXPECT_TRUE(contents.truncated);
    EXPECT_EQ(contents.damage, "a section reaches past the end of the file");
}

TEST(ElfTables, GivenSectionWithoutBitsOverWhatWasAppended_WhenThatIsCutShort_ThenItIsDamaged)
{
    const std::string archive = zipText({{"n/other.txt", "text"}});
    Library library;
    library.sections.resize(2);
    library.sections[1] = section(SHT_NOBITS, library.dataAt(), archive.size() / 2);

    const Contents contents = inspect(library.bytes() + archive.substr(0, archive.size() / 2));

    EXPECT_FALSE(contents.truncated);
    EXPECT_EQ(contents.archive, Archive::damaged);
}

TEST(ElfTables, GivenCountOfSegmentsInSection_WhenRead_ThenTheSegmentsAre)
{
    const Contents contents = inspect(libraryWithCountInSection(2));

    EXPECT_FALSE(contents.truncated) << contents.damage;
    EXPECT_THAT(contents.needed, ElementsAre("libneeded.so"));
}

TEST(ElfTables, GivenCountOfSegmentsInSectionWithoutTheLast_WhenRead_ThenTheLastIsNot)
{
    const Contents contents = inspect(libraryWithCountInSection(1));

    EXPECT_FALSE(contents.truncated) << contents.damage;
    EXPECT_THAT(contents.needed, IsEmpty());
}

TEST(ElfTables, GivenCountOfSegmentsInSectionThatTheFileHasNot_WhenRead_ThenTheLibraryIsTruncated)
{
    const Contents contents = inspect(libraryWithCountInSection(70000));

    EXPECT_TRUE(contents.truncated);
    EXPECT_EQ(contents.damage, "the program header table reaches past the end of the file");
}

} // namespace
