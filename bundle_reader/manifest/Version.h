#pragma once

#include <array>
#include <string>
#include <string_view>

namespace ostrel::bundle_reader {

/// A version as frameworks have it.
struct Version {
    bool undefined = false;            ///< of an empty text
    std::array<unsigned, 3> numbers{}; ///< major, minor and micro
    std::string qualifier;
};

/// What frameworks make of a text.
struct VersionReading {
    Version version;
    std::string fault; ///< why it is none, in the frameworks' words; empty when it is one
    /// False when the text holds more than the numbers and the qualifier that were found, as "1.0.0-rc1" does, which is
    /// 1.0.0: signs, white space, any other characters, numbers that no unsigned int holds, parts that are no number,
    /// or a dot at the end.
    bool exact = true;
};

/// Reads `major[.minor[.micro[.qualifier]]]`.
///
/// Numbers are found as C++ streams find them: white space and a sign may stand before the digits, and anything behind
/// them. "-1" is the largest unsigned int. A part that is no number counts as 0 and one that is too big as the largest
/// unsigned int, except for the last one, which must be a number. A dot at the end begins no further part.
///
/// @throws std::bad_alloc and nothing else
/// @cost   linear in the text's size
VersionReading readVersion(std::string_view text);

/// Why a text is no qualifier ("invalid qualifier: <text>"); empty when it is one: ASCII letters, digits, '_' and '-'.
std::string qualifierFault(std::string_view text);

/// "undefined", or `major.minor.micro[.qualifier]`.
std::string toText(const Version& version);

} // namespace ostrel::bundle_reader
