#include "bundle_checker/BundleKeys.h"

#include "bundle_checker/VersionForm.h"
#include "bundle_checker/Words.h"
#include "bundle_reader/manifest/ManifestKeys.h"
#include "bundle_reader/manifest/ManifestRules.h"

#include <string>

namespace ostrel::bundle_checker {
namespace {

using bundle_reader::findMember;
using bundle_reader::JsonMember;
using bundle_reader::JsonValue;
using bundle_reader::localized;
using Kind = JsonValue::Kind;
namespace keys = bundle_reader::keys;

constexpr std::string_view systemBundle = "system_bundle";

void describeMissingName(const JsonValue& root, std::string_view name, Findings& findings)
{
    std::size_t offset = root.offset;
    std::string nested;
    if (const JsonMember* const bundle = findMember(root, "bundle")) {
        if (const JsonMember* const inner = findMember(bundle->value, "symbolic_name")) {
            offset = inner->offset;
            nested = ": it is one key with a dot, not an object in another";
        }
    }
    addError(findings, offset,
             keyAt(keys::symbolicName) + " is missing" + nested + "; its value must be " + quoted(name) +
                 ", as in the call of ostrel_add_bundle()");
}

void describeName(const JsonValue& root, std::string_view name, Findings& findings)
{
    const JsonMember* const member = findMember(root, keys::symbolicName);
    if (member == nullptr) {
        describeMissingName(root, name, findings);
        return;
    }
    const JsonValue& value = member->value;
    if (value.kind != Kind::text || localized(value.text) != name) {
        const std::string found = value.kind == Kind::text ? quoted(localized(value.text)) : std::string{kindOf(value)};
        addError(findings, value.offset,
                 keyAt(member->key) + " is " + found + ", but the call of ostrel_add_bundle() says " + quoted(name) +
                     "; the two must be equal");
    } else if (name == systemBundle) {
        addWarning(findings, value.offset,
                   keyAt(member->key) + " is " + quoted(name) +
                       ", the name of the framework's own bundle; choose another");
    }
}

void describeVersion(const JsonValue& root, Findings& findings)
{
    const JsonMember* const member = findMember(root, keys::version);
    if (member == nullptr) {
        return;
    }
    const JsonValue& value = member->value;
    if (value.kind != Kind::text) {
        addError(findings, value.offset,
                 keyAt(member->key) + R"( must be a string such as "1.0.0", not )" + std::string{kindOf(value)} +
                     "; the framework refuses the bundle");
        return;
    }
    const VersionForm form = versionForm(localized(value.text));
    if (form.fault.empty()) {
        return;
    }
    const Severity severity = form.isWrong ? Severity::error : Severity::warning;
    findings.push_back({severity, value.offset,
                        keyAt(member->key) + " is " + form.fault + R"(; write "1", "1.2", "1.2.3" or "1.2.3.name")"});
}

void describeActivator(const JsonValue& root, Findings& findings)
{
    const JsonMember* const member = findMember(root, keys::activator);
    if (member != nullptr && member->value.kind != Kind::boolean) {
        addWarning(findings, member->value.offset,
                   keyAt(member->key) + " must be true or false, not " + std::string{kindOf(member->value)} +
                       "; it counts as false, and the library is never loaded");
    }
}

} // namespace

void describeBundleKeys(const JsonValue& root, std::string_view name, Findings& findings)
{
    describeName(root, name, findings);
    describeVersion(root, findings);
    describeActivator(root, findings);
}

} // namespace ostrel::bundle_checker
