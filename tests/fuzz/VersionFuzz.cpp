// Two lines as versions: each is refused by std::invalid_argument or comes back equal from its own text, and comparing
// them is an ordering.
#include "fuzz/FuzzTarget.h"

#include <cppmicroservices/BundleVersion.h>

#include <optional>
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
