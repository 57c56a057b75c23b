#include "text/Utf8.h"

namespace ostrel::text {
namespace {

bool isContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

} // namespace

std::size_t characterLength(std::string_view text)
{
    if (text.empty()) {
        return 0;
    }
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        return 1;
    }
    const std::size_t length = first >= 0xC2 && first < 0xE0   ? 2
                               : first >= 0xE0 && first < 0xF0 ? 3
                               : first >= 0xF0 && first < 0xF5 ? 4
                                                               : 0;
    if (length == 0 || text.size() < length) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(text[i])) {
            return 0;
        }
    }
    // Longer forms than needed, halves of surrogate pairs, and what lies beyond the last character.
    const auto second = static_cast<unsigned char>(text[1]);
    const bool allowed = !(first == 0xE0 && second < 0xA0) && !(first == 0xED && second >= 0xA0) &&
                         !(first == 0xF0 && second < 0x90) && !(first == 0xF4 && second >= 0x90);
    return allowed ? length : 0;
}

} // namespace ostrel::text
