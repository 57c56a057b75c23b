#include "inspection/files/ManifestFault.h"

#include "bundle_checker/ManifestCheck.h"
#include "bundle_reader/manifest/Json.h"
#include "bundle_reader/manifest/ManifestKeys.h"
#include "bundle_reader/manifest/ManifestRules.h"
#include "bundle_reader/manifest/Version.h"

#include <algorithm>

namespace ostrel::inspection {
namespace {

using bundle_reader::Folder;
using bundle_reader::JsonFault;
using bundle_reader::JsonMember;
using bundle_reader::JsonValue;

std::string placed(std::string_view manifest, const bundle_checker::Finding& finding)
{
    const auto position = bundle_reader::positionOf(manifest, finding.offset);
    return "line " + std::to_string(position.line) + ", column " + std::to_string(position.column) +
           " of manifest.json: " + finding.text;
}

Finding notJson(const std::string& path, const Folder& folder, const JsonFault& fault)
{
    const std::string of = "the manifest of the bundle \"" + folder.name + "\" ";
    if (fault.kind == JsonFault::Kind::tooDeep) {
        return {Code::nestedTooDeep,
                path,
                folder.name,
                of + "is nested too deep",
                "more than " + std::to_string(bundle_reader::nestingLimit) + " objects and arrays lie in one another",
                "nest them less deep, and build the bundle again"};
    }
    const auto findings = bundle_checker::checkManifest(*folder.manifest, folder.name);
    const auto error = std::find_if(findings.begin(), findings.end(), [](const bundle_checker::Finding& one) {
        return one.severity == bundle_checker::Severity::error;
    });
    return {Code::manifestSyntax,
            path,
            folder.name,
            of + "is not valid JSON of an object",
            error != findings.end() ? placed(*folder.manifest, *error) : fault.words,
            "correct it there, and build the bundle again"};
}

std::optional<Finding> nameFault(const std::string& path, const Folder& folder, const JsonValue& manifest)
{
    const JsonMember* const name = bundle_reader::findMember(manifest, bundle_reader::keys::symbolicName);
    const bool isEmpty = name != nullptr && name->value.kind == JsonValue::Kind::text &&
                         bundle_reader::localized(name->value.text).empty();
    if (name != nullptr && !isEmpty) {
        return std::nullopt;
    }
    return Finding{Code::noSymbolicName,
                   path,
                   folder.name,
                   "the manifest of the bundle \"" + folder.name + "\" gives no symbolic name",
                   isEmpty ? "its \"bundle.symbolic_name\" is empty" : "it has no key \"bundle.symbolic_name\"",
                   "write \"bundle.symbolic_name\": \"" + folder.name + "\", and build the bundle again"};
}

std::optional<Finding> versionFault(const std::string& path, const Folder& folder, const JsonValue& manifest)
{
    const JsonMember* const version = bundle_reader::findMember(manifest, bundle_reader::keys::version);
    if (version == nullptr) {
        return std::nullopt;
    }
    const auto text = bundle_reader::versionText(manifest);
    const std::string why = text ? bundle_reader::readVersion(*text).fault : "it is no string";
    if (why.empty()) {
        return std::nullopt;
    }
    return Finding{Code::badVersion,
                   path,
                   folder.name,
                   "the version of the bundle \"" + folder.name + "\" is none",
                   "its \"bundle.version\" cannot be used: " + why,
                   R"(write it as "1", "1.2", "1.2.3" or "1.2.3.name" in the manifest, and build the bundle again)"};
}

} // namespace

std::optional<Finding> manifestFault(const std::string& path, const Folder& folder)
{
    if (!folder.manifest) {
        return Finding{Code::folderWithoutManifest,
                       path,
                       folder.name,
                       "the folder \"" + folder.name + "\" in the archive has no manifest.json",
                       "each folder is one bundle and needs one",
                       "give it one, or move what it holds into the folder of a bundle; then build the file again"};
    }
    const bundle_reader::Json json = bundle_reader::readJson(*folder.manifest);
    if (json.fault) {
        return notJson(path, folder, *json.fault);
    }
    auto fault = nameFault(path, folder, json.root);
    return fault ? fault : versionFault(path, folder, json.root);
}

std::vector<std::string> manifestHints(std::string_view manifest, const std::string& symbolicName)
{
    std::vector<std::string> hints;
    for (const auto& finding : bundle_checker::checkManifest(manifest, symbolicName)) {
        hints.push_back(placed(manifest, finding));
    }
    return hints;
}

} // namespace ostrel::inspection
