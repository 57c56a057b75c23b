#include "bundle_checker/VersionForm.h"

#include "bundle_checker/Words.h"
#include "bundle_reader/manifest/Version.h"

#include <algorithm>

namespace ostrel::bundle_checker {
namespace {

/// Frameworks wrap such a number around: "-1" is the largest one that there is.
bool hasNegativeNumber(std::string_view version)
{
    for (int part = 0; part < 3 && !version.empty(); ++part) {
        const std::size_t begin = version.find_first_not_of(" \t\n\v\f\r");
        if (begin != std::string_view::npos && version[begin] == '-') {
            return true;
        }
        version.remove_prefix(std::min(version.find('.'), version.size() - 1) + 1);
    }
    return false;
}

} // namespace

VersionForm versionForm(std::string_view text)
{
    const bundle_reader::VersionReading reading = bundle_reader::readVersion(text);
    if (!reading.fault.empty()) {
        return {true, quoted(text) + ", which is no version, so that the framework refuses the bundle"};
    }
    const std::string taken = quoted(text) + ", which the framework takes for " + toText(reading.version);
    if (reading.version.undefined) {
        return {false, taken};
    }
    if (reading.exact) {
        return {};
    }
    return {hasNegativeNumber(text), taken};
}

} // namespace ostrel::bundle_checker
