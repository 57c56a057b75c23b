#include "inspection/Explanation.h"
#include "inspection/start/Sentence.h"
#include "inspection/writers/Values.h"

namespace ostrel::inspection {
namespace {

JsonValue toJsonValue(const Alternative& alternative)
{
    std::vector<JsonValue> differs;
    for (const Difference& difference : alternative.differs) {
        JsonObject object;
        object.add("attribute", difference.attribute);
        object.add("declared", difference.declared);
        object.add("condition", difference.condition);
        differs.push_back(object.take());
    }
    JsonObject object;
    object.add("verdict", toText(alternative.verdict));
    object.add("differs", std::move(differs));
    object.add("missing", alternative.missing);
    return object.take();
}

JsonValue toJsonValue(const Subject& subject, const Conditions& conditions)
{
    JsonObject object;
    object.add("kind", subject.kind == SubjectKind::service ? "service" : "bundle");
    object.add("name", subject.name).add("file", subject.file).add("bundle", subject.bundle);
    if (subject.admitted) {
        object.add("admitted", *subject.admitted);
    } else {
        object.addNull("admitted");
    }
    object.add("reason", toText(subject.reason)).add("text", subject.text).add("hints", subject.hints);
    std::vector<JsonValue> alternatives;
    for (const Alternative& alternative : subject.alternatives) {
        alternatives.push_back(toJsonValue(alternative));
    }
    object.add("alternatives", std::move(alternatives));
    if (subject.change) {
        JsonObject change;
        change.add("arguments", toArguments(*subject.change));
        change.add("text", changeInWords(conditions, *subject.change));
        object.add("change", change.take());
    } else {
        object.addNull("change");
    }
    return object.take();
}

} // namespace

std::string toJson(const Explanation& explanation, std::string_view tool)
{
    std::vector<JsonValue> subjects;
    for (const Subject& subject : explanation.subjects) {
        subjects.push_back(toJsonValue(subject, explanation.conditions));
    }
    return topLevel("ostrel.explanation/1", tool)
        .add("conditions", toJsonValues(explanation.conditions))
        .add("subjects", std::move(subjects))
        .add("findings", toJsonValues(explanation.findings))
        .add("passedOver", toJsonValues(explanation.passedOver))
        .write();
}

} // namespace ostrel::inspection
