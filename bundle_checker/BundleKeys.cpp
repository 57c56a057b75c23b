#include "bundle_checker/BundleKeys.h"

#include "bundle_checker/Words.h"
#include "bundle_reader/manifest/ManifestKeys.h"
#include "bundle_reader/manifest/ManifestRules.h"
#include "bundle_reader/manifest/Version.h"

#include <algorithm>
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
    } else if (name.empty()) {
        addError(findings, value.offset,
                 keyAt(member->key) + " is empty; give the bundle a name, here and in the call of ostrel_add_bundle()");
    } else if (name == systemBundle) {
        addWarning(findings, value.offset,
                   keyAt(member->key) + " is " + quoted(name) +
                       ", the name of the framework's own bundle; choose another");
    }
}

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

/// A good version is one to three numbers with dots, and behind three of them perhaps a qualifier. What the frameworks
/// take besides, they take for another version than the text says.
void describeVersionText(const JsonMember& member, Findings& findings)
{
    const std::string_view text = localized(member.value.text);
    const bundle_reader::VersionReading reading = bundle_reader::readVersion(text);
    if (reading.fault.empty() && reading.exact && !reading.version.undefined) {
        return;
    }
    const bool isRefused = !reading.fault.empty();
    const Severity severity = isRefused || hasNegativeNumber(text) ? Severity::error : Severity::warning;
    const std::string effect = isRefused ? "which is no version, so that the framework refuses the bundle"
                                         : "which the framework takes for " + toText(reading.version);
    findings.push_back(
        {severity, member.value.offset,
         keyAt(member.key) + " is " + quoted(text) + ", " + effect + R"(; write "1", "1.2", "1.2.3" or "1.2.3.name")"});
}

void describeVersion(const JsonValue& root, Findings& findings)
{
    const JsonMember* const member = findMember(root, keys::version);
    if (member != nullptr && member->value.kind == Kind::text) {
        describeVersionText(*member, findings);
    } else if (member != nullptr) {
        addError(findings, member->value.offset,
                 keyAt(member->key) + R"( must be a string such as "1.0.0", not )" +
                     std::string{kindOf(member->value)} + "; the framework refuses the bundle");
    }
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
