// Two lines as versions: each is refused by std::invalid_argument or comes back equal from its own text, and comparing
// them is an ordering. The reader of manifests takes the same texts for the same versions.
#include "bundle_reader/manifest/Version.h"
#include "fuzz/FuzzTarget.h"

#include <cppmicroservices/BundleVersion.h>

#include <locale>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>

using cppmicroservices::BundleVersion;
using ostrel::fuzz::require;

namespace {

std::optional<BundleVersion> read(const std::string& text)
{
    try {
        return BundleVersion(text);
    } catch (const std::invalid_argument&) {
        return std::nullopt;
    }
}

int signOf(int number)
{
    return (number > 0) - (number < 0);
}

/// A number as C++ streams find it, which is the rule for versions; none when there is none.
std::optional<unsigned> streamed(const std::string& part)
{
    std::istringstream in(part);
    in.imbue(std::locale::classic());
    unsigned number = 0;
    in >> number;
    return in.fail() ? std::nullopt : std::optional<unsigned>(number);
}

void checkReading(const std::string& text)
{
    const auto reading = ostrel::bundle_reader::readVersion(text);
    const auto version = read(text);
    require(reading.fault.empty() == version.has_value(), "manifests and versions know the same texts");
    if (!version || version->IsUndefined()) {
        return;
    }
    require(toText(reading.version) == version->ToString(), "manifests and versions are read alike");
    bool plain = text.back() != '.';
    std::istringstream parts(text);
    std::string part;
    for (std::size_t i = 0; i < reading.version.numbers.size() && std::getline(parts, part, '.'); ++i) {
        const auto number = streamed(part);
        require(!number || *number == reading.version.numbers.at(i), "numbers are found as streams find them");
        plain = plain && number && part.find_first_not_of("0123456789") == std::string::npos;
    }
    require(reading.exact == plain, "a reading is exact when each number consists of digits alone");
}

void checkText(const BundleVersion& version)
{
    if (version.IsUndefined()) {
        return;
    }
    const auto again = read(version.ToString());
    require(again && again->Compare(version) == 0 && again->ToString() == version.ToString(),
            "the text of a version is that version");
}

void checkTrimming(const std::string& text)
{
    try {
        checkText(BundleVersion::ParseVersion("  " + text + " "));
    } catch (const std::invalid_argument&) {
        require(!read(text), "blanks around a version do not matter");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text{ostrel::fuzz::textOf(data, size)};
    const auto end = text.find('\n');
    const std::string first = text.substr(0, end);
    checkTrimming(first);
    checkReading(text);
    checkReading(first);
    const auto left = read(first);
    const auto right = read(end == std::string::npos ? std::string{} : text.substr(end + 1));
    for (const auto& version : {left, right}) {
        if (version) {
            checkText(*version);
        }
    }
    if (left && right && !left->IsUndefined() && !right->IsUndefined()) {
        const int order = signOf(left->Compare(*right));
        require(signOf(right->Compare(*left)) == -order, "comparing the other way round gives the opposite");
        require((*left == *right) == (order == 0), "== is a comparison");
    }
    return 0;
}
