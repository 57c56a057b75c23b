#pragma once

#include <cstdint>
#include <elf.h>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace ostrel::test {

/// Writes a library of 64 bits that has one more section than another one: of `size` bytes, which nobody loads, as
/// debug information has them. The bytes are really there; the file is not sparse.
inline void writeLargeLibrary(const std::filesystem::path& file, const std::string& library, std::uint64_t size)
{
    Elf64_Ehdr header;
    library.copy(reinterpret_cast<char*>(&header), sizeof header);
    std::string sections = library.substr(header.e_shoff, std::uint64_t{header.e_shnum} * header.e_shentsize);
    const std::uint64_t begin = (library.size() + 4095) / 4096 * 4096;
    Elf64_Shdr data{};
    data.sh_type = SHT_PROGBITS;
    data.sh_offset = begin;
    data.sh_size = size;
    sections.append(reinterpret_cast<const char*>(&data), sizeof data);
    header.e_shoff = begin + size;
    ++header.e_shnum;

    std::ofstream out{file, std::ios::binary};
    out.write(reinterpret_cast<const char*>(&header), sizeof header);
    out << library.substr(sizeof header) << std::string(begin - library.size(), '\0');
    std::string part(std::size_t{1} << 20U, '\0');
    for (std::size_t at = 0; at < part.size(); ++at) {
        part[at] = static_cast<char>(at * 2654435761U >> 13U);
    }
    for (std::uint64_t left = size; left != 0;) {
        const std::uint64_t now = left < part.size() ? left : part.size();
        out.write(part.data(), static_cast<std::streamsize>(now));
        left -= now;
    }
    out << sections;
    out.close();
    if (!out) {
        throw std::runtime_error{"cannot write " + file.string() + "; is there room for it?"};
    }
}

} // namespace ostrel::test
