#pragma once

#include "bundle_reader/elf/ElfFields.h"
#include "bundle_reader/file/ByteWindow.h"

#include <cstdint>
#include <elf.h>

namespace ostrel::bundle_reader {

/// The numbers of an ELF file of either class and byte order.
class ElfNumbers {
public:
    /// Reads the identification. That of a file which ends before it counts as the most common.
    explicit ElfNumbers(const ByteSource& source) : m_bytes{source}
    {
        const std::string_view identification = m_bytes.at(0, EI_NIDENT);
        const auto mark = [&](std::size_t at, int unless) {
            return identification.size() > at ? static_cast<unsigned char>(identification[at]) : unless;
        };
        const int wide = mark(EI_CLASS, ELFCLASS64);
        const int order = mark(EI_DATA, ELFDATA2LSB);
        m_known = (wide == ELFCLASS32 || wide == ELFCLASS64) && (order == ELFDATA2LSB || order == ELFDATA2MSB);
        m_wide = wide == ELFCLASS64;
        m_order = order == ELFDATA2MSB ? ByteOrder::big : ByteOrder::little;
    }

    /// Whether class and byte order are ones that there are.
    bool known() const { return m_known; }
    std::uint64_t fileSize() const { return m_bytes.size(); }
    std::uint64_t sizeOf(const ElfRecord& record) const { return m_wide ? record.wide : record.narrow; }

    /// Whether the field of the record at `record` lies within the file.
    bool has(std::uint64_t record, const ElfField& field) const
    {
        return fits(m_bytes.size(), record + offsetOf(field), sizeOf(field));
    }
    /// 0 when it does not lie within the file.
    std::uint64_t number(std::uint64_t record, const ElfField& field)
    {
        return m_bytes.number(record + offsetOf(field), sizeOf(field), m_order);
    }

private:
    std::uint64_t offsetOf(const ElfField& field) const { return m_wide ? field.wideOffset : field.narrowOffset; }
    std::size_t sizeOf(const ElfField& field) const { return m_wide ? field.wideSize : field.narrowSize; }

    ByteWindow m_bytes;
    bool m_known = false;
    bool m_wide = false;
    ByteOrder m_order = ByteOrder::little;
};

} // namespace ostrel::bundle_reader
