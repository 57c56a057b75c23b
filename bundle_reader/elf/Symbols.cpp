#include "bundle_reader/elf/Symbols.h"

#include "bundle_reader/elf/ElfNumbers.h"
#include "bundle_reader/file/FileBytes.h"

#include <algorithm>
#include <cstdint>
#include <elf.h>
#include <optional>
#include <set>
#include <stdexcept>

namespace ostrel::bundle_reader {
namespace {

constexpr std::uint64_t window = 65536; // of names

struct Section {
    std::uint64_t type, link, offset, size, entrySize;
};

class SymbolReader {
public:
    explicit SymbolReader(const std::string& path) : m_path{path}, m_file{path} {}

    std::vector<std::string> read(std::string_view prefix);

private:
    [[noreturn]] void fail(const char* what) const { throw std::runtime_error{m_path + ": " + what}; }
    [[noreturn]] void failPastEnd() const { fail("a table reaches past the end of the file"); }
    std::string bytes(std::uint64_t offset, std::uint64_t length) const;
    std::uint64_t number(std::uint64_t record, const ElfField& field);
    void readHeader();
    Section sectionAt(std::uint64_t index);
    std::optional<Section> dynamicSymbols();
    std::set<std::uint64_t> findNames(const Section& names, std::string_view prefix) const;
    bool isExported(std::uint64_t symbol);
    std::string nameAt(const Section& names, std::uint64_t offset) const;

    std::string m_path;
    FileBytes m_file;
    ElfNumbers m_numbers{m_file};
    std::uint64_t m_sections = 0; // where their table begins
    std::uint64_t m_sectionSize = 0;
    std::uint64_t m_sectionCount = 0;
};

std::string SymbolReader::bytes(std::uint64_t offset, std::uint64_t length) const
{
    std::string read =
        fits(m_file.size(), offset, length) ? m_file.text(offset, static_cast<std::size_t>(length)) : std::string{};
    if (read.size() != length) {
        failPastEnd();
    }
    return read;
}

std::uint64_t SymbolReader::number(std::uint64_t record, const ElfField& field)
{
    if (!m_numbers.has(record, field)) {
        failPastEnd();
    }
    return m_numbers.number(record, field);
}

void SymbolReader::readHeader()
{
    if (m_file.text(0, SELFMAG) != ELFMAG || m_file.size() < EI_NIDENT || !m_numbers.known()) {
        fail("this is no ELF file");
    }
    m_sections = number(0, elf::sectionTable);
    m_sectionSize = number(0, elf::sectionEntrySize);
    m_sectionCount = number(0, elf::sectionCount);
    if (m_sections == 0) {
        m_sectionCount = 0;
    } else if (m_sectionSize < m_numbers.sizeOf(elfSection)) {
        fail("the section header table has entries that are too small");
    } else if (m_sectionCount == 0) {
        // A count too big for the header stands in the first section.
        m_sectionCount = sectionAt(0).size;
    }
}

Section SymbolReader::sectionAt(std::uint64_t index)
{
    if (index > m_file.size()) { // so that the product does not overflow
        failPastEnd();
    }
    const std::uint64_t section = m_sections + index * m_sectionSize;
    return {number(section, elf::sectionType), number(section, elf::sectionLink), number(section, elf::sectionOffset),
            number(section, elf::sectionSize), number(section, elf::sectionRecordSize)};
}

std::optional<Section> SymbolReader::dynamicSymbols()
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

bool SymbolReader::isExported(std::uint64_t symbol)
{
    const std::uint64_t binding = number(symbol, elf::symbolInfo) >> 4U;
    const std::uint64_t visibility = number(symbol, elf::symbolOther) & 3U;
    return number(symbol, elf::symbolSection) != SHN_UNDEF &&
           (binding == STB_GLOBAL || binding == STB_WEAK || binding == STB_GNU_UNIQUE) &&
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
    const std::uint64_t entrySize = m_numbers.sizeOf(elfSymbol);
    if (symbols->entrySize != entrySize || symbols->link >= m_sectionCount) {
        fail("the table of dynamic symbols contradicts itself");
    }
    const Section names = sectionAt(symbols->link);
    if (!fits(m_file.size(), names.offset, names.size) || !fits(m_file.size(), symbols->offset, symbols->size)) {
        failPastEnd();
    }
    const auto wanted = findNames(names, prefix);
    if (wanted.empty()) {
        return {};
    }
    std::set<std::string> found;
    const std::uint64_t count = symbols->size / entrySize;
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t symbol = symbols->offset + i * entrySize;
        const std::uint64_t name = number(symbol, elf::symbolName);
        if (wanted.count(name) != 0 && isExported(symbol)) {
            found.insert(nameAt(names, name));
        }
    }
    return {found.begin(), found.end()};
}

} // namespace

std::vector<std::string> exportedSymbols(const std::string& path, std::string_view prefix)
{
    return SymbolReader{path}.read(prefix);
}

} // namespace ostrel::bundle_reader
