#include "bundle_reader/elf/Symbols.h"

#include "bundle_reader/file/ByteWindow.h"
#include "bundle_reader/file/FileBytes.h"

#include <algorithm>
#include <cstdint>
#include <elf.h>
#include <optional>
#include <set>
#include <stdexcept>

namespace ostrel::bundle_reader {
namespace {

constexpr std::uint64_t window = 65536;

struct Section {
    std::uint64_t type, link, offset, size, entrySize;
};

struct Symbol {
    std::uint64_t name, info, other, section;
};

class SymbolReader {
public:
    explicit SymbolReader(const std::string& path) : m_path{path}, m_file{path} {}

    std::vector<std::string> read(std::string_view prefix);

private:
    [[noreturn]] void fail(const char* what) const { throw std::runtime_error{m_path + ": " + what}; }
    std::string bytes(std::uint64_t offset, std::uint64_t length) const;
    std::uint64_t number(std::string_view from, std::uint64_t offset, std::size_t width) const
    {
        return numberAt(from, offset, width, m_order);
    }
    void readHeader();
    Section sectionAt(std::uint64_t index) const;
    std::optional<Section> dynamicSymbols() const;
    std::set<std::uint64_t> findNames(const Section& names, std::string_view prefix) const;
    Symbol symbolIn(std::string_view entry) const;
    std::string nameAt(const Section& names, std::uint64_t offset) const;

    std::string m_path;
    FileBytes m_file;
    bool m_wide = false;
    ByteOrder m_order = ByteOrder::little;
    std::uint64_t m_sections = 0; // where their table begins
    std::uint64_t m_sectionSize = 0;
    std::uint64_t m_sectionCount = 0;
};

std::string SymbolReader::bytes(std::uint64_t offset, std::uint64_t length) const
{
    std::string read =
        fits(m_file.size(), offset, length) ? m_file.text(offset, static_cast<std::size_t>(length)) : std::string{};
    if (read.size() != length) {
        fail("a table reaches past the end of the file");
    }
    return read;
}

void SymbolReader::readHeader()
{
    const std::string mark = m_file.text(0, EI_NIDENT);
    const bool isElf = mark.size() == EI_NIDENT && mark.compare(0, SELFMAG, ELFMAG) == 0 &&
                       (mark[EI_CLASS] == ELFCLASS32 || mark[EI_CLASS] == ELFCLASS64) &&
                       (mark[EI_DATA] == ELFDATA2LSB || mark[EI_DATA] == ELFDATA2MSB);
    if (!isElf) {
        fail("this is no ELF file");
    }
    m_wide = mark[EI_CLASS] == ELFCLASS64;
    m_order = mark[EI_DATA] == ELFDATA2MSB ? ByteOrder::big : ByteOrder::little;
    const std::string header = bytes(0, m_wide ? sizeof(Elf64_Ehdr) : sizeof(Elf32_Ehdr));
    m_sections = m_wide ? number(header, 40, 8) : number(header, 32, 4);
    m_sectionSize = number(header, m_wide ? 58 : 46, 2);
    m_sectionCount = number(header, m_wide ? 60 : 48, 2);
    if (m_sections == 0) {
        m_sectionCount = 0;
    } else if (m_sectionSize < (m_wide ? sizeof(Elf64_Shdr) : sizeof(Elf32_Shdr))) {
        fail("the section header table has entries that are too small");
    } else if (m_sectionCount == 0) {
        // A count too big for the header stands in the first section.
        m_sectionCount = sectionAt(0).size;
    }
}

Section SymbolReader::sectionAt(std::uint64_t index) const
{
    if (index > m_file.size()) { // so that the product does not overflow
        fail("a table reaches past the end of the file");
    }
    const std::string entry = bytes(m_sections + index * m_sectionSize, m_sectionSize);
    if (m_wide) {
        return {number(entry, 4, 4), number(entry, 40, 4), number(entry, 24, 8), number(entry, 32, 8),
                number(entry, 56, 8)};
    }
    return {number(entry, 4, 4), number(entry, 24, 4), number(entry, 16, 4), number(entry, 20, 4),
            number(entry, 36, 4)};
}

std::optional<Section> SymbolReader::dynamicSymbols() const
{
    for (std::uint64_t index = 0; index < m_sectionCount; ++index) {
        const Section section = sectionAt(index);
        if (section.type == SHT_DYNSYM) {
            return section;
        }
    }
    return std::nullopt;
}

/// Where names that begin with the prefix lie in the section. A name may be the end of a longer one.
std::set<std::uint64_t> SymbolReader::findNames(const Section& names, std::string_view prefix) const
{
    std::set<std::uint64_t> found;
    for (std::uint64_t begin = 0; begin < names.size && found.size() < exportedLimit; begin += window) {
        // As many bytes more as a prefix that begins in this window may have in the next one.
        const std::string part = bytes(names.offset + begin, std::min(window + prefix.size() - 1, names.size - begin));
        for (std::size_t at = part.find(prefix); at != std::string::npos && found.size() < exportedLimit;
             at = part.find(prefix, at + 1)) {
            found.insert(begin + at);
        }
    }
    return found;
}

Symbol SymbolReader::symbolIn(std::string_view entry) const
{
    if (m_wide) {
        return {number(entry, 0, 4), number(entry, 4, 1), number(entry, 5, 1), number(entry, 6, 2)};
    }
    return {number(entry, 0, 4), number(entry, 12, 1), number(entry, 13, 1), number(entry, 14, 2)};
}

bool isExported(const Symbol& symbol)
{
    const std::uint64_t binding = symbol.info >> 4U;
    const std::uint64_t visibility = symbol.other & 3U;
    return symbol.section != SHN_UNDEF && (binding == STB_GLOBAL || binding == STB_WEAK || binding == STB_GNU_UNIQUE) &&
           (visibility == STV_DEFAULT || visibility == STV_PROTECTED);
}

std::string SymbolReader::nameAt(const Section& names, std::uint64_t offset) const
{
    std::string name = bytes(names.offset + offset, std::min<std::uint64_t>(exportedNameLimit, names.size - offset));
    return name.substr(0, name.find('\0'));
}

std::vector<std::string> SymbolReader::read(std::string_view prefix)
{
    readHeader();
    const auto symbols = dynamicSymbols();
    if (!symbols) {
        return {};
    }
    const std::uint64_t entrySize = m_wide ? sizeof(Elf64_Sym) : sizeof(Elf32_Sym);
    if (symbols->entrySize != entrySize || symbols->link >= m_sectionCount) {
        fail("the table of dynamic symbols contradicts itself");
    }
    const Section names = sectionAt(symbols->link);
    if (!fits(m_file.size(), names.offset, names.size) || !fits(m_file.size(), symbols->offset, symbols->size)) {
        fail("a table reaches past the end of the file");
    }
    const auto wanted = findNames(names, prefix);
    if (wanted.empty()) {
        return {};
    }
    std::set<std::string> found;
    const std::uint64_t perWindow = window / entrySize;
    for (std::uint64_t left = symbols->size / entrySize, offset = symbols->offset; left != 0;) {
        const std::uint64_t count = std::min(left, perWindow);
        const std::string part = bytes(offset, count * entrySize);
        for (std::uint64_t i = 0; i < count; ++i) {
            const Symbol symbol = symbolIn(std::string_view{part}.substr(i * entrySize, entrySize));
            if (isExported(symbol) && wanted.count(symbol.name) != 0) {
                found.insert(nameAt(names, symbol.name));
            }
        }
        left -= count;
        offset += count * entrySize;
    }
    return {found.begin(), found.end()};
}

} // namespace

std::vector<std::string> exportedSymbols(const std::string& path, std::string_view prefix)
{
    return SymbolReader{path}.read(prefix);
}

} // namespace ostrel::bundle_reader
