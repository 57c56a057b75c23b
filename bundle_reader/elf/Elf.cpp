#include "bundle_reader/elf/Elf.h"

#include "bundle_reader/file/ByteView.h"

#include <algorithm>
#include <cstddef>
#include <elf.h>
#include <optional>

namespace ostrel::bundle_reader {
namespace {

constexpr std::string_view magic{"\x7f"
                                 "ELF"};
// Far above what a linker writes; they keep a hostile file from costing much memory.
constexpr std::size_t neededLimit = 4096;
constexpr std::size_t neededNameLimit = 4096;

struct Segment {
    std::uint64_t type, offset, address, fileSize;
};

struct Section {
    std::uint64_t type, offset, size, info;
};

struct Table {
    std::uint64_t offset, entrySize, count;
};

class ElfReader {
public:
    explicit ElfReader(std::string_view bytes) : m_bytes{bytes} {}

    Elf read();

private:
    std::uint64_t number(std::uint64_t offset, std::size_t width) const
    {
        return numberAt(m_bytes, offset, width, m_order);
    }
    std::size_t word() const { return m_wide ? 8 : 4; }
    Segment segmentAt(std::uint64_t at) const;
    Section sectionAt(std::uint64_t at) const;
    void cover(std::uint64_t offset, std::uint64_t length, const char* what);
    bool coverTable(const Table& table, std::uint64_t leastEntrySize, const char* what);
    void readTables();
    void readNeeded();
    std::optional<std::uint64_t> fileOffset(std::uint64_t address) const;

    std::string_view m_bytes;
    bool m_wide = false;
    ByteOrder m_order = ByteOrder::little;
    std::vector<Segment> m_segments;
    Elf m_elf;
};

Segment ElfReader::segmentAt(std::uint64_t at) const
{
    if (m_wide) {
        return {number(at, 4), number(at + 8, 8), number(at + 16, 8), number(at + 32, 8)};
    }
    return {number(at, 4), number(at + 4, 4), number(at + 8, 4), number(at + 16, 4)};
}

Section ElfReader::sectionAt(std::uint64_t at) const
{
    if (m_wide) {
        return {number(at + 4, 4), number(at + 24, 8), number(at + 32, 8), number(at + 44, 4)};
    }
    return {number(at + 4, 4), number(at + 16, 4), number(at + 20, 4), number(at + 28, 4)};
}

void ElfReader::cover(std::uint64_t offset, std::uint64_t length, const char* what)
{
    if (length == 0) {
        return;
    }
    if (fits(m_bytes.size(), offset, length)) {
        m_elf.end = std::max(m_elf.end, offset + length);
    } else if (!m_elf.truncated) {
        m_elf.truncated = true;
        m_elf.damage = std::string{what} + " reaches past the end of the file";
    }
}

bool ElfReader::coverTable(const Table& table, std::uint64_t leastEntrySize, const char* what)
{
    if (table.offset == 0 || table.count == 0) {
        return false;
    }
    if (table.entrySize < leastEntrySize) {
        m_elf.truncated = true;
        m_elf.damage = std::string{what} + " has entries that are too small";
        return false;
    }
    // Counts are 32 bits and entry sizes 16 bits wide at most, so the product does not overflow.
    cover(table.offset, table.entrySize * table.count, what);
    return !m_elf.truncated;
}

void ElfReader::readTables()
{
    Table segments = m_wide ? Table{number(32, 8), number(54, 2), number(56, 2)}
                            : Table{number(28, 4), number(42, 2), number(44, 2)};
    Table sections = m_wide ? Table{number(40, 8), number(58, 2), number(60, 2)}
                            : Table{number(32, 4), number(46, 2), number(48, 2)};
    const std::uint64_t leastSegment = m_wide ? sizeof(Elf64_Phdr) : sizeof(Elf32_Phdr);
    const std::uint64_t leastSection = m_wide ? sizeof(Elf64_Shdr) : sizeof(Elf32_Shdr);

    // Counts too big for the header stand in the first section.
    if (sections.offset != 0 && fits(m_bytes.size(), sections.offset, leastSection)) {
        const Section first = sectionAt(sections.offset);
        if (sections.count == 0) {
            sections.count = std::min<std::uint64_t>(first.size, 0xffffffffU);
        }
        if (segments.count == PN_XNUM) {
            segments.count = first.info;
        }
    }

    if (coverTable(segments, leastSegment, "the program header table")) {
        for (std::uint64_t index = 0; index < segments.count; ++index) {
            const Segment segment = segmentAt(segments.offset + index * segments.entrySize);
            cover(segment.offset, segment.fileSize, "a segment");
            m_segments.push_back(segment);
        }
    }
    if (coverTable(sections, leastSection, "the section header table")) {
        for (std::uint64_t index = 0; index < sections.count; ++index) {
            const Section section = sectionAt(sections.offset + index * sections.entrySize);
            if (section.type != SHT_NULL && section.type != SHT_NOBITS) {
                cover(section.offset, section.size, "a section");
            }
        }
    }
}

std::optional<std::uint64_t> ElfReader::fileOffset(std::uint64_t address) const
{
    for (const Segment& segment : m_segments) {
        if (segment.type == PT_LOAD && address >= segment.address && address - segment.address < segment.fileSize) {
            return segment.offset + (address - segment.address);
        }
    }
    return std::nullopt;
}

void ElfReader::readNeeded()
{
    const auto dynamic = std::find_if(m_segments.begin(), m_segments.end(),
                                      [](const Segment& segment) { return segment.type == PT_DYNAMIC; });
    if (dynamic == m_segments.end()) {
        return;
    }
    std::vector<std::uint64_t> names;
    std::uint64_t tableAddress = 0;
    std::uint64_t tableSize = 0;
    for (std::uint64_t at = 0; fits(dynamic->fileSize, at, 2 * word()); at += 2 * word()) {
        const std::uint64_t tag = number(dynamic->offset + at, word());
        const std::uint64_t value = number(dynamic->offset + at + word(), word());
        if (tag == DT_NULL) {
            break;
        }
        if (tag == DT_NEEDED && names.size() < neededLimit) {
            names.push_back(value);
        } else if (tag == DT_STRTAB) {
            tableAddress = value;
        } else if (tag == DT_STRSZ) {
            tableSize = value;
        }
    }
    const auto tableOffset = fileOffset(tableAddress);
    if (!tableOffset) {
        return;
    }
    const std::string_view table = m_bytes.substr(*tableOffset, tableSize);
    for (const std::uint64_t name : names) {
        if (name < table.size()) {
            const std::string_view rest = table.substr(name, neededNameLimit);
            m_elf.needed.emplace_back(rest.substr(0, rest.find('\0')));
        }
    }
}

Elf ElfReader::read()
{
    const std::size_t leastHeader = sizeof(Elf32_Ehdr);
    const char wideMark = m_bytes.size() > EI_CLASS ? m_bytes[EI_CLASS] : char{ELFCLASS64};
    const char orderMark = m_bytes.size() > EI_DATA ? m_bytes[EI_DATA] : char{ELFDATA2LSB};
    if ((wideMark != ELFCLASS32 && wideMark != ELFCLASS64) || (orderMark != ELFDATA2LSB && orderMark != ELFDATA2MSB)) {
        return m_elf;
    }
    m_wide = wideMark == ELFCLASS64;
    m_order = orderMark == ELFDATA2MSB ? ByteOrder::big : ByteOrder::little;
    const std::uint64_t headerSize = m_wide ? sizeof(Elf64_Ehdr) : leastHeader;

    m_elf.sharedObject = !fits(m_bytes.size(), 16, 2) || number(16, 2) == ET_DYN;
    if (m_elf.sharedObject) {
        cover(0, headerSize, "the ELF header");
        if (!m_elf.truncated) {
            readTables();
        }
        if (!m_elf.truncated) {
            readNeeded();
        }
    }
    return m_elf;
}

} // namespace

bool beginsLikeElf(std::string_view bytes)
{
    return bytes.substr(0, magic.size()) == magic;
}

Elf readElf(std::string_view bytes)
{
    return ElfReader{bytes}.read();
}

} // namespace ostrel::bundle_reader
