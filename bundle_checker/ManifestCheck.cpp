#include "bundle_checker/ManifestCheck.h"

#include "bundle_checker/BundleKeys.h"
#include "bundle_checker/ComponentKeys.h"
#include "bundle_checker/DroppedValues.h"
#include "bundle_checker/Encoding.h"
#include "bundle_checker/SyntaxFault.h"
#include "bundle_checker/UnknownKeys.h"
#include "bundle_reader/BundleFile.h"
#include "bundle_reader/manifest/Json.h"

#include <algorithm>
#include <string>

namespace ostrel::bundle_checker {

Findings checkManifest(std::string_view text, std::string_view name)
{
    if (text.size() > bundle_reader::manifestLimit) {
        return {{Severity::error, 0,
                 "the manifest is larger than " + std::to_string(bundle_reader::manifestLimit) +
                     " bytes, and is not read; put into RESOURCES what is no manifest"}};
    }
    const bundle_reader::Json json = bundle_reader::readJson(text);
    if (json.fault) {
        return {describeFault(text, *json.fault)};
    }
    Findings findings;
    describeEncoding(text, findings);
    describeDropped(json.root, findings);
    describeUnknownKeys(json.root, findings);
    describeBundleKeys(json.root, name, findings);
    describeComponentKeys(json.root, findings);
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding& left, const Finding& right) { return left.offset < right.offset; });
    return findings;
}

} // namespace ostrel::bundle_checker
