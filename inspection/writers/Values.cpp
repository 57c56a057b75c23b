#include "inspection/writers/Values.h"

namespace ostrel::inspection {

JsonObject topLevel(std::string_view schema, std::string_view tool)
{
    JsonObject object;
    object.add("schema", schema).add("tool", tool);
    return object;
}

std::vector<JsonValue> toJsonValues(const Conditions& conditions)
{
    std::vector<JsonValue> values;
    for (const Condition& condition : conditions) {
        JsonObject object;
        object.add("name", condition.name).add("value", condition.value).add("required", condition.required);
        values.push_back(object.take());
    }
    return values;
}

std::vector<JsonValue> toJsonValues(const std::vector<Finding>& findings)
{
    std::vector<JsonValue> values;
    for (const Finding& finding : findings) {
        JsonObject object;
        object.add("code", toText(finding.code)).add("file", finding.file);
        if (finding.bundle.empty()) {
            object.addNull("bundle");
        } else {
            object.add("bundle", finding.bundle);
        }
        object.add("what", finding.what).add("why", finding.why).add("do", finding.remedy);
        values.push_back(object.take());
    }
    return values;
}

std::vector<JsonValue> toJsonValues(const std::vector<PassedOver>& files)
{
    std::vector<JsonValue> values;
    for (const PassedOver& one : files) {
        JsonObject object;
        object.add("file", one.file).add("why", one.why);
        values.push_back(object.take());
    }
    return values;
}

} // namespace ostrel::inspection
