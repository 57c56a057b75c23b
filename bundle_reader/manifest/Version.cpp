#include "bundle_reader/manifest/Version.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace ostrel::bundle_reader {
namespace {

constexpr unsigned largest = std::numeric_limits<unsigned>::max();

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

struct Number {
    unsigned value = 0;
    bool valid = false;
    bool exact = false;
};

/// As `std::istream >> unsigned` in the classic locale.
Number readNumber(std::string_view part)
{
    std::size_t at = std::min(part.find_first_not_of(" \t\n\v\f\r"), part.size());
    const bool negative = part.substr(at, 1) == "-";
    if (negative || part.substr(at, 1) == "+") {
        ++at;
    }
    const std::size_t first = at;
    std::uint64_t value = 0;
    for (; at < part.size() && isDigit(part[at]); ++at) {
        value = std::min<std::uint64_t>(value * 10 + static_cast<std::uint64_t>(part[at] - '0'), largest + 1ULL);
    }
    Number number;
    number.valid = at > first && value <= largest;
    number.value = static_cast<unsigned>(std::min<std::uint64_t>(value, largest));
    number.exact = number.valid && first == 0 && at == part.size();
    if (negative && number.valid) {
        number.value = 0 - number.value;
    }
    return number;
}

/// Takes the part before the next dot off a text.
std::string_view takePart(std::string_view& rest)
{
    const std::string_view part = rest.substr(0, rest.find('.'));
    rest.remove_prefix(std::min(part.size() + 1, rest.size()));
    return part;
}

} // namespace

std::string qualifierFault(std::string_view text)
{
    const bool valid = std::all_of(text.begin(), text.end(), [](char c) {
        return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '-';
    });
    return valid ? std::string{} : std::string{"invalid qualifier: "}.append(text);
}

VersionReading readVersion(std::string_view text)
{
    VersionReading reading;
    if (text.empty()) {
        reading.version.undefined = true;
        return reading;
    }
    reading.exact = text.back() != '.';
    bool valid = false;
    for (unsigned& value : reading.version.numbers) {
        if (text.empty()) {
            break;
        }
        const Number number = readNumber(takePart(text));
        value = number.value;
        valid = number.valid;
        reading.exact = reading.exact && number.exact;
    }
    if (!valid) {
        reading.fault = "invalid format";
        return reading;
    }
    const std::string_view qualifier = takePart(text);
    if (!text.empty()) {
        reading.fault = "invalid format";
        return reading;
    }
    reading.fault = qualifierFault(qualifier);
    reading.version.qualifier = qualifier;
    return reading;
}

std::string toText(const Version& version)
{
    if (version.undefined) {
        return "undefined";
    }
    std::string text;
    for (const unsigned number : version.numbers) {
        text.append(text.empty() ? "" : ".").append(std::to_string(number));
    }
    return version.qualifier.empty() ? text : text.append(".").append(version.qualifier);
}

} // namespace ostrel::bundle_reader
