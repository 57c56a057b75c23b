#include "inspection/files/FrameworkValue.h"

#include "bundle_reader/manifest/ManifestRules.h"
#include "inspection/filter/Attempt.h"

#include <cppmicroservices/AnyMap.h>

#include <vector>

namespace ostrel::inspection {

using bundle_reader::JsonValue;
using cppmicroservices::Any;
using cppmicroservices::AnyMap;

namespace {

AnyMap toMap(const JsonValue& value)
{
    AnyMap map{cppmicroservices::any_map::UNORDERED_MAP_CASEINSENSITIVE_KEYS};
    for (const auto& member : value.members) {
        if (!bundle_reader::isDropped(member.value)) {
            map.emplace(member.key, toAny(member.value)); // of keys that are one, the first stays
        }
    }
    return map;
}

} // namespace

Any toAny(const JsonValue& value)
{
    switch (value.kind) {
    case JsonValue::Kind::map:
        return toMap(value);
    case JsonValue::Kind::list: {
        std::vector<Any> items;
        for (const JsonValue& item : value.items) {
            if (!bundle_reader::isDropped(item)) {
                items.push_back(toAny(item));
            }
        }
        return items;
    }
    case JsonValue::Kind::text:
        return std::string{bundle_reader::localized(value.text)};
    case JsonValue::Kind::boolean:
        return value.boolean;
    case JsonValue::Kind::integer:
        return static_cast<int>(value.integer);
    case JsonValue::Kind::number:
        return value.number;
    case JsonValue::Kind::wideInteger:
    case JsonValue::Kind::null:
        break;
    }
    return {};
}

std::optional<std::string> componentNameOf(const JsonValue& manifest)
{
    return attempted([&manifest] { return toMap(manifest).AtCompoundKey("zq.component.name").ToString(); });
}

} // namespace ostrel::inspection
