#include "bundle_checker/Encoding.h"

#include "bundle_checker/Words.h"
#include "text/Utf8.h"

namespace ostrel::bundle_checker {
namespace {

constexpr std::size_t escapeLength = 6; // \uXXXX

bool isSurrogate(std::string_view escape, std::string_view thirdDigits)
{
    return escape.size() >= escapeLength && escape[1] == 'u' && (escape[2] == 'd' || escape[2] == 'D') &&
           thirdDigits.find(escape[3]) != std::string_view::npos;
}

/// Bytes of the escape at the beginning; pairs of surrogates count as one.
std::size_t lengthOfEscape(std::string_view rest)
{
    if (isSurrogate(rest, "89abAB")) {
        return 2 * escapeLength;
    }
    return 2; // what follows \u are letters like others
}

} // namespace

void describeEncoding(std::string_view text, Findings& findings)
{
    std::size_t firstBad = text.size();
    std::size_t badBytes = 0;
    for (std::size_t i = 0; i < text.size();) {
        const std::string_view rest = text.substr(i);
        // Outside of strings JSON has no backslashes.
        if (rest.front() == '\\') {
            if (isSurrogate(rest, "cdefCDEF")) {
                addWarning(findings, i,
                           "half of a surrogate pair: " + quoted(rest.substr(0, escapeLength)) +
                               " lacks its first half, \\ud800 to \\udbff; the framework makes bytes of it that are no "
                               "UTF-8");
            }
            i += lengthOfEscape(rest);
        } else if (const std::size_t length = text::characterLength(rest); length != 0) {
            i += length;
        } else {
            firstBad = badBytes == 0 ? i : firstBad;
            ++badBytes;
            ++i;
        }
    }
    if (badBytes != 0) {
        // Once for the file, which was saved in another encoding as a whole.
        addWarning(findings, firstBad,
                   "the byte " + escaped(text.substr(firstBad, 1)) + " is no UTF-8" +
                       (badBytes == 1 ? "" : " (there are " + std::to_string(badBytes) + " such bytes in the file)") +
                       "; the framework takes it as it is; save the file as UTF-8");
    }
}

} // namespace ostrel::bundle_checker
