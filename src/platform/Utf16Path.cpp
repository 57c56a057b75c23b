#include "platform/Utf16Path.h"

#include <boost/locale/utf.hpp>

#include <iterator>
#include <stdexcept>
#include <utility>

namespace ostrel::platform {

Utf16Path::Utf16Path(std::u16string path, bool flag) : m_path{std::move(path)}, m_flag{flag} {}

const std::u16string& Utf16Path::path() const noexcept
{
    return m_path;
}

bool Utf16Path::flag() const noexcept
{
    return m_flag;
}

bool operator==(const Utf16Path& left, const Utf16Path& right) noexcept
{
    return left.flag() == right.flag() && left.path() == right.path();
}

bool operator!=(const Utf16Path& left, const Utf16Path& right) noexcept
{
    return !(left == right);
}

std::u16string toUtf16(const std::string& utf8)
{
    namespace utf = boost::locale::utf;
    std::u16string converted;
    for (auto at = utf8.begin(); at != utf8.end();) {
        const auto offset = std::distance(utf8.begin(), at);
        const utf::code_point point = utf::utf_traits<char>::decode(at, utf8.end());
        if (point == utf::illegal || point == utf::incomplete) {
            throw std::runtime_error{"toUtf16: the text is not UTF-8 at offset " + std::to_string(offset) +
                                     "; give it in UTF-8"};
        }
        utf::utf_traits<char16_t>::encode(point, std::back_inserter(converted));
    }
    return converted;
}

void joinPath(std::u16string& base, const std::u16string& name, bool flag)
{
    if (name.empty()) {
        return;
    }
    const bool separated = base.empty() || base.back() == u'/' || (flag && base.back() == u'\\');
    if (!separated) {
        base.push_back(u'/');
    }
    base += name;
}

} // namespace ostrel::platform
