#pragma once

#include <cstdint>
#include <elf.h>
#include <string>
#include <vector>

namespace ostrel::test {

/// Makes the bytes of a smallest shared object, of either class and byte order, as no linker makes them for a machine
/// of another kind. It has a segment that is loaded, a dynamic one, and the sections that are asked for.
class SmallElf {
public:
    struct Section {
        std::string name;
        std::uint32_t type;
        std::string content;
    };

    SmallElf(bool wide, bool bigEndian) : m_wide{wide}, m_bigEndian{bigEndian} {}

    /// DT_NEEDED names; one of them unless said otherwise.
    std::vector<std::string> needed{"libneeded.so"};
    std::vector<Section> sections;
    /// Numbers that may stand in the first section stand there.
    bool numbersInFirstSection = false;
    /// The size of an entry of the table of sections, when it is to be another than the right one.
    std::uint64_t sectionEntrySize = 0;
    /// Where the names of needed libraries are said to begin, beyond where they do.
    std::uint64_t neededShift = 0;

    std::string bytes();

private:
    SmallElf& add(int width, std::uint64_t number);
    SmallElf& word(std::uint64_t number) { return add(m_wide ? 8 : 4, number); }
    void segment(std::uint64_t type, std::uint64_t offset, std::uint64_t size);
    void section(std::uint64_t name, std::uint64_t type, std::uint64_t offset, std::uint64_t size, std::uint64_t link,
                 std::uint64_t info);

    bool m_wide;
    bool m_bigEndian;
    std::string m_bytes;
};

} // namespace ostrel::test
