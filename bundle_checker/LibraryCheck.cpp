#include "bundle_checker/LibraryCheck.h"

#include "bundle_checker/Words.h"
#include "bundle_reader/manifest/ManifestKeys.h"
#include "bundle_reader/manifest/ManifestRules.h"

#include <algorithm>

namespace ostrel::bundle_checker {
namespace {

using bundle_reader::JsonMember;
namespace keys = bundle_reader::keys;

/// The other bundles that have an activator: the macro stands there, below another name.
std::string otherActivators(const std::vector<std::string>& activators)
{
    std::string list;
    for (const std::string& name : activators) {
        list += (list.empty() ? "" : ", ") + quoted(name);
    }
    return list.empty() ? list : " (those that it exports are of " + list + "; US_BUNDLE_NAME says which)";
}

} // namespace

Findings checkActivator(std::string_view text, std::string_view name, std::string_view library,
                        const std::vector<std::string>& activators)
{
    const bundle_reader::Json json = bundle_reader::readJson(text);
    if (json.fault) {
        return {};
    }
    const JsonMember* const asked = bundle_reader::findMember(json.root, keys::activator);
    const bool isAsked = bundle_reader::asksForActivator(json.root);
    const bool isExported = std::find(activators.begin(), activators.end(), name) != activators.end();
    const std::size_t offset = asked != nullptr ? asked->value.offset : json.root.offset;

    Findings findings;
    if (isAsked && !isExported) {
        addError(findings, offset,
                 keyAt(asked->key) + " is true, but " + quoted(library) + " exports no activator of the bundle " +
                     quoted(name) + otherActivators(activators) +
                     ", so that it cannot start; write CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(<class>) in one of its "
                     "sources, or leave the key out");
    } else if (isExported && !isAsked) {
        addWarning(findings, offset,
                   quoted(library) + " exports an activator of the bundle " + quoted(name) + ", but " +
                       keyAt(keys::activator) + " is not true: the library is never loaded");
    }
    return findings;
}

} // namespace ostrel::bundle_checker
