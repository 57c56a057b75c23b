#pragma once

#include <cstdint>
#include <elf.h>
#include <string>
#include <vector>

namespace ostrel::test {

/// A dynamic symbol to be written.
struct DynamicSymbol {
    std::string name;
    unsigned char binding = STB_GLOBAL;
    unsigned char visibility = STV_DEFAULT;
    std::uint16_t section = 1; ///< SHN_UNDEF: not defined there
    bool isTailOfLast = false; ///< its name is the end of the one before, and lies there
};

/// The bytes of an ELF file that has nothing but a table of dynamic symbols: header, names, symbols, sections.
class SymbolFile {
public:
    SymbolFile(bool wide, bool bigEndian) : m_wide{wide}, m_bigEndian{bigEndian} {}

    // What a test may want otherwise.
    std::uint64_t symbolSize = 0; ///< of one entry, as the section tells it; 0: the right one
    std::uint64_t symbolsLink = 1;
    std::uint64_t namesOffset = 0; ///< added to
    std::uint64_t namesSize = 0;   ///< added to
    std::uint64_t symbolsSize = 0; ///< added to
    std::uint64_t sectionSize = 0; ///< of one section header; 0: the right one
    bool countInFirstSection = false;

    std::string bytes(const std::vector<DynamicSymbol>& symbols)
    {
        const std::uint64_t header = m_wide ? sizeof(Elf64_Ehdr) : sizeof(Elf32_Ehdr);
        const std::uint64_t entry = m_wide ? sizeof(Elf64_Sym) : sizeof(Elf32_Sym);
        const std::uint64_t section = m_wide ? sizeof(Elf64_Shdr) : sizeof(Elf32_Shdr);
        std::string names(1, '\0');
        std::vector<std::uint64_t> places;
        for (const DynamicSymbol& symbol : symbols) {
            places.push_back(symbol.isTailOfLast ? names.size() - symbol.name.size() - 1 : names.size());
            names += symbol.isTailOfLast ? "" : symbol.name + '\0';
        }
        const std::uint64_t symbolsAt = header + names.size();
        const std::uint64_t sectionsAt = symbolsAt + (symbols.size() + 1) * entry;

        m_bytes = std::string{ELFMAG} + char(m_wide ? ELFCLASS64 : ELFCLASS32) +
                  char(m_bigEndian ? ELFDATA2MSB : ELFDATA2LSB) + char(EV_CURRENT);
        m_bytes.resize(EI_NIDENT, '\0');
        add(2, ET_DYN).add(2, 0).add(4, EV_CURRENT).word(0).word(0).word(sectionsAt).add(4, 0).add(2, header);
        add(2, 0).add(2, 0).add(2, sectionSize == 0 ? section : sectionSize);
        add(2, countInFirstSection ? 0 : 3).add(2, 0);
        m_bytes += names;
        m_bytes.resize(m_bytes.size() + entry, '\0'); // the first symbol is none
        for (std::size_t i = 0; i < symbols.size(); ++i) {
            addSymbol(symbols[i], places[i]);
        }
        addSection(SHT_NULL, 0, countInFirstSection ? 3 : 0, 0, 0);
        addSection(SHT_STRTAB, header + namesOffset, names.size() + namesSize, 0, 0);
        addSection(SHT_DYNSYM, symbolsAt, (symbols.size() + 1) * entry + symbolsSize, symbolsLink,
                   symbolSize == 0 ? entry : symbolSize);
        return m_bytes;
    }

private:
    SymbolFile& add(int width, std::uint64_t number)
    {
        for (int i = 0; i < width; ++i) {
            m_bytes += static_cast<char>(number >> 8 * (m_bigEndian ? width - 1 - i : i));
        }
        return *this;
    }

    SymbolFile& word(std::uint64_t number) { return add(m_wide ? 8 : 4, number); }

    void addSymbol(const DynamicSymbol& symbol, std::uint64_t name)
    {
        const auto info = static_cast<unsigned char>(symbol.binding << 4U | STT_FUNC);
        add(4, name);
        if (m_wide) {
            add(1, info).add(1, symbol.visibility).add(2, symbol.section).add(8, 0).add(8, 0);
        } else {
            add(4, 0).add(4, 0).add(1, info).add(1, symbol.visibility).add(2, symbol.section);
        }
    }

    void addSection(std::uint64_t type, std::uint64_t offset, std::uint64_t size, std::uint64_t link,
                    std::uint64_t entrySize)
    {
        add(4, 0).add(4, type).word(0).word(0).word(offset).word(size).add(4, link).add(4, 0).word(0).word(entrySize);
    }

    bool m_wide;
    bool m_bigEndian;
    std::string m_bytes;
};

} // namespace ostrel::test
