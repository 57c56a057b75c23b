#pragma once

#include "platform/Export.h"

#include <string>

namespace ostrel::platform {

/// A file system path in UTF-16, with a flag that says whether u'\\' also counts as a separator in it.
///
/// A value: nothing is checked, normalised or looked up; only who uses the path reads its flag.
class OSTREL_EXPORT Utf16Path {
public:
    /// @param path  UTF-16; need not be well-formed
    /// @param flag  true: u'\\' is a separator as u'/' is; false: only u'/' is
    /// @locks       none
    explicit Utf16Path(std::u16string path, bool flag = false);

    /// The string as given. @locks none
    const std::u16string& path() const noexcept;

    /// The flag as given. @locks none
    bool flag() const noexcept;

private:
    std::u16string m_path;
    bool m_flag;
};

/// Whether string and flag are equal; two spellings of one file are not. @locks none
OSTREL_EXPORT bool operator==(const Utf16Path& left, const Utf16Path& right) noexcept;
OSTREL_EXPORT bool operator!=(const Utf16Path& left, const Utf16Path& right) noexcept;

/// Converts UTF-8 to UTF-16. Zero bytes are characters like others.
///
/// @throws std::runtime_error with the offset in bytes of the first sequence that is no UTF-8
/// @locks  none
/// @cost   linear
OSTREL_EXPORT std::u16string toUtf16(const std::string& utf8);

/// Appends `name` to the path `base` as one more component.
///
/// A u'/' comes between, unless `base` is empty or ends in a separator already. `name` is appended unchanged, even
/// where it begins with a separator. An empty `name` changes nothing.
///
/// @param flag  that of the path which `base` is from: whether a u'\\' at the end of `base` is a separator
/// @locks       none
OSTREL_EXPORT void joinPath(std::u16string& base, const std::u16string& name, bool flag);

} // namespace ostrel::platform
