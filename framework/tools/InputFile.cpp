#include "InputFile.h"

#include <array>
#include <cstddef>
#include <fstream>
#include <stdexcept>

std::string readFile(const std::string& path, const std::string& what)
{
    std::ifstream file{path, std::ios::binary};
    std::string bytes;
    std::array<char, 65536> part;
    // By read(), which turns the error of reading a folder into a state of the stream.
    while (file.read(part.data(), part.size()) || file.gcount() > 0) {
        bytes.append(part.data(), static_cast<std::size_t>(file.gcount()));
    }
    if (!file.is_open() || file.bad()) {
        throw std::runtime_error{what + " '" + path + "'"};
    }
    return bytes;
}
