#include "support/SmallElf.h"

namespace ostrel::test {

SmallElf& SmallElf::add(int width, std::uint64_t number)
{
    for (int i = 0; i < width; ++i) {
        m_bytes += static_cast<char>(number >> 8 * (m_bigEndian ? width - 1 - i : i));
    }
    return *this;
}

void SmallElf::segment(std::uint64_t type, std::uint64_t offset, std::uint64_t size)
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

void SmallElf::section(std::uint64_t name, std::uint64_t type, std::uint64_t offset, std::uint64_t size,
                       std::uint64_t link, std::uint64_t info)
{
    add(4, name).add(4, type).word(0).word(0).word(offset).word(size).add(4, link).add(4, info).word(1).word(0);
}

std::string SmallElf::bytes()
{
    const std::uint64_t headers = m_wide ? sizeof(Elf64_Ehdr) : sizeof(Elf32_Ehdr);
    const std::uint64_t entry = m_wide ? sizeof(Elf64_Phdr) : sizeof(Elf32_Phdr);
    const std::uint64_t sectionEntry = m_wide ? sizeof(Elf64_Shdr) : sizeof(Elf32_Shdr);
    const std::uint64_t pair = m_wide ? sizeof(Elf64_Dyn) : sizeof(Elf32_Dyn);
    const std::uint64_t dynamic = headers + 2 * entry;
    const std::uint64_t names = dynamic + (needed.size() + 3) * pair;

    std::string table(1, '\0');
    std::vector<std::uint64_t> places;
    for (const std::string& name : needed) {
        places.push_back(table.size() + neededShift);
        table += name + '\0';
    }
    std::string contents;
    std::string sectionNames(1, '\0');
    for (const Section& made : sections) {
        contents += made.content;
        sectionNames += made.name + '\0';
    }
    const std::uint64_t contentsAt = names + table.size();
    const std::uint64_t sectionNamesAt = contentsAt + contents.size();
    const std::uint64_t sectionTable = sections.empty() ? 0 : sectionNamesAt + sectionNames.size();
    const std::uint64_t sectionCount = sections.empty() ? 0 : sections.size() + 2;
    const bool inFirst = numbersInFirstSection;

    m_bytes = ELFMAG + std::string{char(m_wide ? ELFCLASS64 : ELFCLASS32)} +
              char(m_bigEndian ? ELFDATA2MSB : ELFDATA2LSB) + char(EV_CURRENT);
    m_bytes.resize(EI_NIDENT, '\0');
    add(2, ET_DYN).add(2, 0).add(4, EV_CURRENT).word(0).word(headers).word(sectionTable);
    add(4, 0).add(2, headers).add(2, entry).add(2, inFirst ? PN_XNUM : 2);
    add(2, sectionEntrySize != 0 ? sectionEntrySize : sections.empty() ? 0 : sectionEntry);
    add(2, inFirst ? 0 : sectionCount).add(2, inFirst ? SHN_XINDEX : sections.empty() ? 0 : sectionCount - 1);

    segment(PT_LOAD, 0, names + table.size());
    segment(PT_DYNAMIC, dynamic, names - dynamic);
    for (const std::uint64_t place : places) {
        word(DT_NEEDED).word(place);
    }
    word(DT_STRTAB).word(names).word(DT_STRSZ).word(table.size()).word(DT_NULL).word(0);
    m_bytes += table + contents;
    if (!sections.empty()) {
        m_bytes += sectionNames;
        section(0, SHT_NULL, 0, inFirst ? sectionCount : 0, inFirst ? sectionCount - 1 : 0, inFirst ? 2 : 0);
        std::uint64_t at = contentsAt;
        std::uint64_t name = 1;
        for (const Section& made : sections) {
            section(name, made.type, at, made.content.size(), 0, 0);
            at += made.content.size();
            name += made.name.size() + 1;
        }
        section(0, SHT_STRTAB, sectionNamesAt, sectionNames.size(), 0, 0);
    }
    return m_bytes;
}

} // namespace ostrel::test
