#pragma once

#include <cstddef>
#include <cstdint>
#include <elf.h>

namespace ostrel::bundle_reader {

/// Where a number stands in a record of an ELF file of 64 bits (wide) and of 32 bits (narrow).
struct ElfField {
    std::uint64_t wideOffset;
    std::size_t wideSize;
    std::uint64_t narrowOffset;
    std::size_t narrowSize;
};

/// What is told from the records' declarations in <elf.h>.
template <class Wide, class Narrow>
constexpr ElfField elfField(std::size_t wideOffset, Wide /*member*/, std::size_t narrowOffset, Narrow /*member*/)
{
    return {wideOffset, sizeof(Wide), narrowOffset, sizeof(Narrow)};
}

// The macro offsetof() takes the names of record and member only.
#define OSTREL_ELF_FIELD(Record, member)                                                                               \
    elfField(offsetof(Elf64_##Record, member), decltype(Elf64_##Record::member){}, offsetof(Elf32_##Record, member),   \
             decltype(Elf32_##Record::member){})

namespace elf {

inline constexpr ElfField fileType = OSTREL_ELF_FIELD(Ehdr, e_type);
inline constexpr ElfField segmentTable = OSTREL_ELF_FIELD(Ehdr, e_phoff);
inline constexpr ElfField segmentEntrySize = OSTREL_ELF_FIELD(Ehdr, e_phentsize);
inline constexpr ElfField segmentCount = OSTREL_ELF_FIELD(Ehdr, e_phnum);
inline constexpr ElfField sectionTable = OSTREL_ELF_FIELD(Ehdr, e_shoff);
inline constexpr ElfField sectionEntrySize = OSTREL_ELF_FIELD(Ehdr, e_shentsize);
inline constexpr ElfField sectionCount = OSTREL_ELF_FIELD(Ehdr, e_shnum);
inline constexpr ElfField sectionOfNames = OSTREL_ELF_FIELD(Ehdr, e_shstrndx);

inline constexpr ElfField segmentType = OSTREL_ELF_FIELD(Phdr, p_type);
inline constexpr ElfField segmentOffset = OSTREL_ELF_FIELD(Phdr, p_offset);
inline constexpr ElfField segmentAddress = OSTREL_ELF_FIELD(Phdr, p_vaddr);
inline constexpr ElfField segmentFileSize = OSTREL_ELF_FIELD(Phdr, p_filesz);

inline constexpr ElfField sectionName = OSTREL_ELF_FIELD(Shdr, sh_name);
inline constexpr ElfField sectionType = OSTREL_ELF_FIELD(Shdr, sh_type);
inline constexpr ElfField sectionOffset = OSTREL_ELF_FIELD(Shdr, sh_offset);
inline constexpr ElfField sectionSize = OSTREL_ELF_FIELD(Shdr, sh_size);
inline constexpr ElfField sectionLink = OSTREL_ELF_FIELD(Shdr, sh_link);
inline constexpr ElfField sectionInfo = OSTREL_ELF_FIELD(Shdr, sh_info);
inline constexpr ElfField sectionRecordSize = OSTREL_ELF_FIELD(Shdr, sh_entsize);

inline constexpr ElfField symbolName = OSTREL_ELF_FIELD(Sym, st_name);
inline constexpr ElfField symbolInfo = OSTREL_ELF_FIELD(Sym, st_info);
inline constexpr ElfField symbolOther = OSTREL_ELF_FIELD(Sym, st_other);
inline constexpr ElfField symbolSection = OSTREL_ELF_FIELD(Sym, st_shndx);

inline constexpr ElfField dynamicTag = OSTREL_ELF_FIELD(Dyn, d_tag);
inline constexpr ElfField dynamicValue = OSTREL_ELF_FIELD(Dyn, d_un);

} // namespace elf

#undef OSTREL_ELF_FIELD

/// The size of a record, of either class.
struct ElfRecord {
    std::uint64_t wide;
    std::uint64_t narrow;
};

inline constexpr ElfRecord elfHeader{sizeof(Elf64_Ehdr), sizeof(Elf32_Ehdr)};
inline constexpr ElfRecord elfSegment{sizeof(Elf64_Phdr), sizeof(Elf32_Phdr)};
inline constexpr ElfRecord elfSection{sizeof(Elf64_Shdr), sizeof(Elf32_Shdr)};
inline constexpr ElfRecord elfDynamic{sizeof(Elf64_Dyn), sizeof(Elf32_Dyn)};
inline constexpr ElfRecord elfSymbol{sizeof(Elf64_Sym), sizeof(Elf32_Sym)};

} // namespace ostrel::bundle_reader
