#include "bundle_checker/ComponentKeys.h"

#include "bundle_checker/Words.h"
#include "bundle_reader/manifest/ManifestKeys.h"
#include "bundle_reader/manifest/ManifestRules.h"

#include <algorithm>
#include <string>

namespace ostrel::bundle_checker {
namespace {

using bundle_reader::findMember;
using bundle_reader::isDropped;
using bundle_reader::isSameKey;
using bundle_reader::JsonMember;
using bundle_reader::JsonValue;
using Kind = JsonValue::Kind;
namespace keys = bundle_reader::keys;

constexpr std::string_view failsAtStart = "; a start by directory and conditions fails at this bundle";

std::string pathOf(const JsonMember& outer, const JsonMember& inner)
{
    return outer.key + '.' + inner.key;
}

/// At the place where the name should be, as far as the way there exists.
void describeMissingName(const JsonValue& root, const JsonMember* zq, const JsonMember* component, Findings& findings)
{
    const JsonValue& nearest = component != nullptr ? component->value : zq != nullptr ? zq->value : root;
    std::string found;
    if (nearest.kind != Kind::map) {
        found = " (" + quoted(component != nullptr ? pathOf(*zq, *component) : zq->key) + " is " +
                std::string{kindOf(nearest)} + ')';
    }
    addWarning(findings, nearest.offset,
               R"(key "zq.component.name" is not there as nested objects, {"zq": {"component": {"name": "…"}}})" +
                   found + std::string{failsAtStart});
}

void describeName(const JsonValue& value, const std::string& path, Findings& findings)
{
    if (value.kind != Kind::text) {
        addWarning(findings, value.offset,
                   keyAt(path) + " should be a string, not " + std::string{kindOf(value)} +
                       "; its printed text is the name");
    } else if (bundle_reader::localized(value.text).empty()) {
        addWarning(findings, value.offset,
                   keyAt(path) + " is empty; the container remembers the bundle under this name, and finds no file of "
                                 "that name when it reloads");
    }
}

/// A key with dots is one key, which nobody looks for.
///
/// @return true when one of them means the component's name
bool describeFlatKeys(const JsonValue& root, bool hasName, Findings& findings)
{
    bool meansName = false;
    for (const JsonMember& member : root.members) {
        const bool isFilters = isSameKey(member.key, "zq.ostrelFilters");
        if (!isFilters && !isSameKey(member.key, "zq.component.name") && !isSameKey(member.key, "zq.component")) {
            continue;
        }
        std::string words = " is never found, for it is one key with dots; write ";
        words += isFilters ? R"({"zq": {"ostrelFilters": […]}})" : R"({"zq": {"component": {"name": "…"}}})";
        if (!isFilters) {
            meansName = true;
            words += hasName ? std::string_view{} : failsAtStart;
        }
        addWarning(findings, member.offset, keyAt(member.key) + words);
    }
    return meansName;
}

void describeAttributes(const JsonValue& alternative, const std::string& path, Findings& findings)
{
    for (const JsonMember& attribute : alternative.members) {
        if (attribute.value.kind == Kind::map || attribute.value.kind == Kind::list) {
            addWarning(findings, attribute.value.offset,
                       keyAt(path + '.' + attribute.key) + " should be a plain value, not " +
                           std::string{kindOf(attribute.value)} +
                           "; its printed text as a whole is compared, not what is in it");
        }
    }
}

void describeAlternatives(const JsonValue& filters, const std::string& path, Findings& findings)
{
    const bool admitsAny = std::any_of(filters.items.begin(), filters.items.end(),
                                       [](const JsonValue& item) { return item.kind == Kind::map; });
    if (!admitsAny) {
        addWarning(findings, filters.offset,
                   keyAt(path) + (filters.items.empty() ? " is an empty array" : " holds no object") +
                       ", so that no conditions ever admit the bundle; leave the key out to have it admitted by all "
                       "hosts that require nothing");
    }
    for (std::size_t i = 0; i < filters.items.size(); ++i) {
        const JsonValue& item = filters.items[i];
        const std::string itemPath = path + '[' + std::to_string(i) + ']';
        if (item.kind == Kind::map) {
            describeAttributes(item, itemPath, findings);
        } else if (!isDropped(item)) {
            addWarning(findings, item.offset,
                       keyAt(itemPath) + " must be an object, not " + std::string{kindOf(item)} + "; it is skipped");
        }
    }
}

void describeFilters(const JsonMember* zq, Findings& findings)
{
    const JsonMember* const filters = zq != nullptr ? findMember(zq->value, keys::filters) : nullptr;
    if (filters == nullptr) {
        return;
    }
    if (filters->value.kind == Kind::list) {
        describeAlternatives(filters->value, pathOf(*zq, *filters), findings);
    } else {
        addWarning(findings, filters->value.offset,
                   keyAt(pathOf(*zq, *filters)) + " must be an array of objects, not " +
                       std::string{kindOf(filters->value)} +
                       "; nobody looks into it, and the bundle is admitted unless the host requires an attribute");
    }
}

} // namespace

void describeComponentKeys(const JsonValue& root, Findings& findings)
{
    const JsonMember* const zq = findMember(root, keys::container);
    const JsonMember* const component = zq != nullptr ? findMember(zq->value, keys::component) : nullptr;
    const JsonMember* const name = component != nullptr ? findMember(component->value, keys::componentName) : nullptr;

    const bool meantFlat = describeFlatKeys(root, name != nullptr, findings);
    if (name != nullptr) {
        describeName(name->value, pathOf(*zq, *component) + '.' + name->key, findings);
    } else if (!meantFlat) {
        describeMissingName(root, zq, component, findings);
    }
    describeFilters(zq, findings);
}

} // namespace ostrel::bundle_checker
