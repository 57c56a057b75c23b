#include "bundle_checker/UnknownKeys.h"

#include "bundle_checker/Words.h"
#include "bundle_reader/manifest/ManifestKeys.h"
#include "bundle_reader/manifest/ManifestRules.h"
#include "text/Nearest.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::bundle_checker {
namespace {

using bundle_reader::findMember;
using bundle_reader::isSameKey;
using bundle_reader::JsonMember;
using bundle_reader::JsonValue;
namespace keys = bundle_reader::keys;

bool isKnown(std::string_view key, const std::vector<std::string_view>& known)
{
    return std::any_of(known.begin(), known.end(), [key](std::string_view one) { return isSameKey(key, one); });
}

void describeMembers(const JsonValue& map, const std::string& path, const std::vector<std::string_view>& known,
                     Findings& findings)
{
    std::string list;
    for (const std::string_view key : known) {
        list += (list.empty() ? "" : " and ") + quoted(key);
    }
    for (const JsonMember& member : map.members) {
        if (isKnown(member.key, known)) {
            continue;
        }
        std::string hint = ", which nobody looks at; known are " + list;
        if (const std::string_view nearest = text::nearest(member.key, known); !nearest.empty()) {
            hint = ": did you mean " + quoted(nearest) + '?';
        } else if (member.key.find('.') != std::string::npos) {
            hint = ", which nobody looks at, for it is one key with dots; write nested objects";
        }
        addWarning(findings, member.offset, "unknown key " + quoted(member.key) + " in " + quoted(path) + hint);
    }
}

/// The suggestion is made by what follows the prefix, which all of them share.
void describeFrameworkKeys(const JsonValue& root, Findings& findings)
{
    const std::string prefix{keys::ofFrameworks};
    std::vector<std::string_view> known{keys::framework.begin(), keys::framework.end()};
    for (std::string_view& key : known) {
        key.remove_prefix(prefix.size());
    }
    for (const JsonMember& member : root.members) {
        const std::string_view key = member.key;
        if (!isSameKey(key.substr(0, prefix.size()), prefix) || isKnown(key.substr(prefix.size()), known)) {
            continue;
        }
        const std::string_view nearest = text::nearest(key.substr(prefix.size()), known);
        addWarning(findings, member.offset,
                   "unknown key " + quoted(key) +
                       (nearest.empty() ? ", which nobody looks at; give keys of your own another beginning"
                                        : ": did you mean " + quoted(std::string{prefix}.append(nearest)) + '?'));
    }
}

} // namespace

void describeUnknownKeys(const JsonValue& root, Findings& findings)
{
    describeFrameworkKeys(root, findings);
    const JsonMember* const zq = findMember(root, keys::container);
    if (zq == nullptr) {
        return;
    }
    describeMembers(zq->value, zq->key, {keys::ofContainer.begin(), keys::ofContainer.end()}, findings);
    if (const JsonMember* const component = findMember(zq->value, keys::component)) {
        describeMembers(component->value, zq->key + '.' + component->key, {keys::componentName}, findings);
    }
}

} // namespace ostrel::bundle_checker
