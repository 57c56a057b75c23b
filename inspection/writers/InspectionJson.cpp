#include "bundle_reader/manifest/Json.h"
#include "bundle_reader/manifest/ManifestKeys.h"
#include "bundle_reader/manifest/ManifestRules.h"
#include "inspection/Inspection.h"
#include "inspection/writers/Values.h"

namespace ostrel::inspection {
namespace {

void addOrNull(JsonObject& object, std::string_view key, const std::optional<std::string>& text)
{
    if (text) {
        object.add(key, *text);
    } else {
        object.addNull(key);
    }
}

JsonValue filtersIn(const JsonValue& headers)
{
    namespace keys = bundle_reader::keys;
    const auto* const container = bundle_reader::findMember(headers, keys::container);
    const auto* const filters =
        container != nullptr ? bundle_reader::findMember(container->value, keys::filters) : nullptr;
    return filters != nullptr ? filters->value : jsonNull();
}

JsonValue toJsonValue(const InspectedBundle& bundle)
{
    JsonValue headers = bundle_reader::readJson(bundle.headers).root;
    JsonObject object;
    object.add("symbolicName", bundle.symbolicName);
    addOrNull(object, "version", bundle.version);
    addOrNull(object, "componentName", bundle.componentName);
    object.add("activator", bundle.activator).add("filters", filtersIn(headers));
    object.add("headers", std::move(headers));
    object.add("resources", bundle.resources);
    return object.take();
}

JsonValue toJsonValue(const InspectedFile& file)
{
    JsonObject object;
    object.add("file", file.file).add("kind", toText(file.kind));
    addOrNull(object, "framework", file.framework);
    std::vector<JsonValue> bundles;
    for (const InspectedBundle& bundle : file.bundles) {
        bundles.push_back(toJsonValue(bundle));
    }
    object.add("bundles", std::move(bundles)).add("needed", file.needed);
    addOrNull(object, "why", file.why.empty() ? std::nullopt : std::optional{file.why});
    if (file.fault) {
        object.add("code", toText(file.fault->code)).add("do", file.fault->remedy);
    }
    return object.take();
}

std::vector<JsonValue> toJsonValues(const Vocabulary& vocabulary)
{
    std::vector<JsonValue> values;
    for (const auto& [name, texts] : vocabulary) {
        JsonObject object;
        object.add("name", name).add("values", std::vector<std::string>{texts.begin(), texts.end()});
        values.push_back(object.take());
    }
    return values;
}

} // namespace

std::string toJson(const Inspection& inspection, std::string_view tool)
{
    std::vector<JsonValue> files;
    for (const InspectedFile& file : inspection.files) {
        files.push_back(toJsonValue(file));
    }
    return topLevel("ostrel.inspection/1", tool)
        .add("files", std::move(files))
        .add("vocabulary", toJsonValues(inspection.vocabulary))
        .write();
}

} // namespace ostrel::inspection
