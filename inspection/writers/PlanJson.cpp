#include "inspection/Plan.h"
#include "inspection/writers/Values.h"

namespace ostrel::inspection {
namespace {

void addWhereKnown(JsonObject& object, std::string_view key, const std::optional<std::string>& text)
{
    if (text) {
        object.add(key, *text);
    }
}

JsonValue toJsonValue(const PlannedBundle& bundle)
{
    JsonObject object;
    object.add("file", bundle.file);
    addWhereKnown(object, "symbolicName", bundle.symbolicName);
    addWhereKnown(object, "version", bundle.version);
    addWhereKnown(object, "componentName", bundle.componentName);
    object.add("outcome", toText(bundle.outcome)).add("reason", bundle.reason).add("text", bundle.text);
    if (!bundle.sha256.empty()) {
        object.add("sha256", bundle.sha256);
    }
    return object.take();
}

JsonValue toJsonValue(const PlanSummary& summary)
{
    JsonObject reasons;
    for (const auto& [reason, count] : summary.reasons) {
        reasons.add(reason, count);
    }
    JsonObject object;
    object.add("start", summary.start).add("skip", summary.skip).add("fail", summary.fail);
    object.add("notReached", summary.notReached).add("reasons", reasons.take());
    return object.take();
}

} // namespace

std::string toJson(const Plan& plan, std::string_view tool)
{
    std::vector<JsonValue> bundles;
    for (const PlannedBundle& bundle : plan.bundles) {
        bundles.push_back(toJsonValue(bundle));
    }
    return topLevel("ostrel.plan/1", tool)
        .add("conditions", toJsonValues(plan.conditions))
        .add("keepGoing", plan.keepGoing)
        .add("bundles", std::move(bundles))
        .add("passedOver", toJsonValues(plan.passedOver))
        .add("findings", toJsonValues(plan.findings))
        .add("summary", toJsonValue(summaryOf(plan)))
        .write();
}

} // namespace ostrel::inspection
