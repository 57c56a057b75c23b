#include "bundle_reader/elf/Elf.h"

#include "bundle_reader/elf/ElfNumbers.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace ostrel::bundle_reader {
namespace {

constexpr std::string_view magic{ELFMAG, SELFMAG};
// Far above what a linker writes; they keep a hostile file from costing much memory.
constexpr std::size_t neededLimit = 4096;
constexpr std::size_t neededNameLimit = 4096;
constexpr std::size_t segmentLimit = 65536;
constexpr std::size_t archiveSectionLimit = 16;

/// Where archives are linked in: by this project's functions, and by those of an installed CppMicroServices.
constexpr std::string_view archiveSectionNames[] = {".ostrel_bundle", ".us_resources"};

struct Segment {
    std::uint64_t type, offset, address, fileSize;
};

struct Section {
    std::uint64_t name, type, offset, size, link, info;
};

struct Table {
    std::uint64_t offset, entrySize, count;
};

class ElfReader {
public:
    explicit ElfReader(const ByteSource& source) : m_numbers{source}, m_names{source} {}

    Elf read();

private:
    Segment segmentAt(std::uint64_t at);
    Section sectionAt(std::uint64_t at);
    void cover(std::uint64_t offset, std::uint64_t length, const char* what);
    bool coverTable(const Table& table, std::uint64_t leastEntrySize, const char* what);
    void readTables();
    void readSegments(const Table& segments);
    void readSections(const Table& sections, const Section& names);
    void readNeeded();
    std::optional<std::uint64_t> fileOffset(std::uint64_t address) const;

    ElfNumbers m_numbers;
    ByteWindow m_names;
    std::vector<Segment> m_segments; // that are loaded, and the dynamic ones
    Elf m_elf;
};

Segment ElfReader::segmentAt(std::uint64_t at)
{
    return {m_numbers.number(at, elf::segmentType), m_numbers.number(at, elf::segmentOffset),
            m_numbers.number(at, elf::segmentAddress), m_numbers.number(at, elf::segmentFileSize)};
}

Section ElfReader::sectionAt(std::uint64_t at)
{
    return {m_numbers.number(at, elf::sectionName),   m_numbers.number(at, elf::sectionType),
            m_numbers.number(at, elf::sectionOffset), m_numbers.number(at, elf::sectionSize),
            m_numbers.number(at, elf::sectionLink),   m_numbers.number(at, elf::sectionInfo)};
}

void ElfReader::cover(std::uint64_t offset, std::uint64_t length, const char* what)
{
    if (length == 0) {
        return;
    }
    if (fits(m_numbers.fileSize(), offset, length)) {
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

void ElfReader::readSegments(const Table& segments)
{
    for (std::uint64_t index = 0; index < segments.count; ++index) {
        const Segment segment = segmentAt(segments.offset + index * segments.entrySize);
        cover(segment.offset, segment.fileSize, "a segment");
        const bool isOfUse = segment.type == PT_LOAD || segment.type == PT_DYNAMIC;
        if (isOfUse && m_segments.size() < segmentLimit) {
            m_segments.push_back(segment);
        }
    }
}

void ElfReader::readSections(const Table& sections, const Section& names)
{
    for (std::uint64_t index = 0; index < sections.count; ++index) {
        const Section section = sectionAt(sections.offset + index * sections.entrySize);
        if (section.type == SHT_NULL || section.type == SHT_NOBITS) {
            continue; // no bytes of the file
        }
        cover(section.offset, section.size, "a section");
        const auto isNamed = [&](std::string_view name) {
            const std::string_view there = m_names.at(names.offset + section.name, name.size() + 1);
            return there.size() > name.size() && there.substr(0, name.size()) == name && there.back() == '\0';
        };
        if (section.type == SHT_PROGBITS && section.name < names.size && section.size != 0 &&
            m_elf.archiveSections.size() < archiveSectionLimit &&
            std::any_of(std::begin(archiveSectionNames), std::end(archiveSectionNames), isNamed)) {
            m_elf.archiveSections.push_back({section.offset, section.size});
        }
    }
    std::sort(m_elf.archiveSections.begin(), m_elf.archiveSections.end(),
              [](const Extent& left, const Extent& right) { return left.offset < right.offset; });
}

void ElfReader::readTables()
{
    Table segments{m_numbers.number(0, elf::segmentTable), m_numbers.number(0, elf::segmentEntrySize),
                   m_numbers.number(0, elf::segmentCount)};
    Table sections{m_numbers.number(0, elf::sectionTable), m_numbers.number(0, elf::sectionEntrySize),
                   m_numbers.number(0, elf::sectionCount)};
    std::uint64_t sectionOfNames = m_numbers.number(0, elf::sectionOfNames);

    // Numbers too big for the header stand in the first section.
    const std::uint64_t leastSection = m_numbers.sizeOf(elfSection);
    if (sections.offset != 0 && fits(m_numbers.fileSize(), sections.offset, leastSection)) {
        const Section first = sectionAt(sections.offset);
        if (sections.count == 0) {
            sections.count = std::min<std::uint64_t>(first.size, 0xffffffffU);
        }
        if (segments.count == PN_XNUM) {
            segments.count = first.info;
        }
        if (sectionOfNames == SHN_XINDEX) {
            sectionOfNames = first.link;
        }
    }

    if (coverTable(segments, m_numbers.sizeOf(elfSegment), "the program header table")) {
        readSegments(segments);
    }
    if (coverTable(sections, leastSection, "the section header table")) {
        const bool hasNames = sectionOfNames < sections.count;
        readSections(sections, hasNames ? sectionAt(sections.offset + sectionOfNames * sections.entrySize) : Section{});
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
    std::optional<std::uint64_t> tableAddress;
    std::uint64_t tableSize = 0;
    const std::uint64_t entrySize = m_numbers.sizeOf(elfDynamic);
    for (std::uint64_t at = 0; fits(dynamic->fileSize, at, entrySize); at += entrySize) {
        const std::uint64_t tag = m_numbers.number(dynamic->offset + at, elf::dynamicTag);
        const std::uint64_t value = m_numbers.number(dynamic->offset + at, elf::dynamicValue);
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
    const auto tableOffset = tableAddress ? fileOffset(*tableAddress) : std::nullopt;
    if (!tableOffset) {
        return;
    }
    tableSize = std::min(tableSize, m_numbers.fileSize() - *tableOffset);
    for (const std::uint64_t name : names) {
        if (name < tableSize) {
            const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(neededNameLimit, tableSize - name));
            const std::string_view rest = m_names.at(*tableOffset + name, length);
            m_elf.needed.emplace_back(rest.substr(0, rest.find('\0')));
        }
    }
}

Elf ElfReader::read()
{
    if (!m_numbers.known()) {
        return m_elf;
    }
    m_elf.sharedObject = !m_numbers.has(0, elf::fileType) || m_numbers.number(0, elf::fileType) == ET_DYN;
    if (m_elf.sharedObject) {
        cover(0, m_numbers.sizeOf(elfHeader), "the ELF header");
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

Elf readElf(const ByteSource& source)
{
    return ElfReader{source}.read();
}

} // namespace ostrel::bundle_reader
