#include "platform/Utf8.h"

#include <boost/locale/utf.hpp>

#include <iterator>
#include <optional>
#include <stdexcept>

namespace ostrel::platform {

std::string toUtf8(const std::u16string& utf16)
{
    namespace utf = boost::locale::utf;
    constexpr utf::code_point replacement = 0xfffd;
    std::string converted;
    converted.reserve(utf16.size());
    std::optional<std::size_t> fault;
    for (auto at = utf16.begin(); at != utf16.end();) {
        const auto start = at;
        utf::code_point point = utf::utf_traits<char16_t>::decode(at, utf16.end());
        if (point == utf::illegal || point == utf::incomplete) {
            fault = fault.value_or(static_cast<std::size_t>(start - utf16.begin()));
            point = replacement;
            at = std::next(start); // the unit after a lone lead may begin a character of its own
        }
        utf::utf_traits<char>::encode(point, std::back_inserter(converted));
    }
    if (fault) {
        throw std::runtime_error{"the UTF-16 text '" + converted + "' has an unpaired surrogate at offset " +
                                 std::to_string(*fault)};
    }
    return converted;
}

} // namespace ostrel::platform
