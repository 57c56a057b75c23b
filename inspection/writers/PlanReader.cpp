#include "bundle_reader/manifest/Json.h"
#include "inspection/Plan.h"

#include <algorithm>
#include <stdexcept>

namespace ostrel::inspection {
namespace {

using bundle_reader::JsonMember;
using bundle_reader::JsonValue;
using Kind = JsonValue::Kind;

[[noreturn]] void fail(const std::string& what)
{
    throw std::runtime_error{"it is no plan: " + what};
}

const JsonValue* find(const JsonValue& map, std::string_view key)
{
    const auto member =
        std::find_if(map.members.begin(), map.members.end(), [key](const JsonMember& one) { return one.key == key; });
    return member == map.members.end() ? nullptr : &member->value;
}

const JsonValue& need(const JsonValue& map, std::string_view key, Kind kind)
{
    const JsonValue* const value = find(map, key);
    if (value == nullptr || value->kind != kind) {
        fail('"' + std::string{key} + "\" is missing or of another kind");
    }
    return *value;
}

int digit(char c)
{
    constexpr std::string_view digits = "0123456789abcdef";
    const std::size_t place = digits.find(c);
    return place == std::string_view::npos ? -1 : static_cast<int>(place);
}

std::string fromHex(const std::string& hex)
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        const int high = digit(hex[i]);
        const int low = digit(hex[i + 1]);
        if (high < 0 || low < 0) {
            fail("\"" + hex + "\" is not in hexadecimal digits");
        }
        bytes += static_cast<char>(high * 16 + low);
    }
    return bytes;
}

/// A text that is no UTF-8 stands in a second member.
std::optional<std::string> textAt(const JsonValue& map, const std::string& key)
{
    if (const JsonValue* const hex = find(map, key + "Hex"); hex != nullptr && hex->kind == Kind::text) {
        return fromHex(hex->text);
    }
    const JsonValue* const value = find(map, key);
    return value != nullptr && value->kind == Kind::text ? std::optional{value->text} : std::nullopt;
}

std::string needText(const JsonValue& map, const std::string& key)
{
    need(map, key, Kind::text);
    return textAt(map, key).value_or("");
}

const JsonValue& asMap(const JsonValue& value)
{
    if (value.kind != Kind::map) {
        fail("a list holds what is no object");
    }
    return value;
}

Outcome outcomeAt(const JsonValue& map)
{
    const std::string text = needText(map, "outcome");
    for (const Outcome outcome : {Outcome::start, Outcome::skip, Outcome::fail, Outcome::notReached}) {
        if (toText(outcome) == text) {
            return outcome;
        }
    }
    fail("there is no outcome \"" + text + '"');
}

} // namespace

Plan readPlan(std::string_view json)
{
    const bundle_reader::Json read = bundle_reader::readJson(json);
    if (read.fault) {
        const auto place = bundle_reader::positionOf(json, read.fault->offset);
        fail("line " + std::to_string(place.line) + ", column " + std::to_string(place.column) + ": " +
             (read.fault->otherRoot ? "it is no object" : read.fault->words));
    }
    if (const std::string schema = needText(read.root, "schema"); schema != "ostrel.plan/1") {
        fail("its schema is \"" + schema + "\" and not \"ostrel.plan/1\"");
    }
    Plan plan;
    for (const JsonValue& value : need(read.root, "conditions", Kind::list).items) {
        const JsonValue& condition = asMap(value);
        plan.conditions.push_back({needText(condition, "name"), needText(condition, "value"),
                                   need(condition, "required", Kind::boolean).boolean});
    }
    plan.keepGoing = need(read.root, "keepGoing", Kind::boolean).boolean;
    for (const JsonValue& value : need(read.root, "bundles", Kind::list).items) {
        const JsonValue& bundle = asMap(value);
        PlannedBundle planned;
        planned.file = needText(bundle, "file");
        planned.symbolicName = textAt(bundle, "symbolicName");
        planned.version = textAt(bundle, "version");
        planned.componentName = textAt(bundle, "componentName");
        planned.outcome = outcomeAt(bundle);
        planned.reason = needText(bundle, "reason");
        planned.text = needText(bundle, "text");
        planned.sha256 = textAt(bundle, "sha256").value_or("");
        plan.bundles.push_back(std::move(planned));
    }
    return plan;
}

} // namespace ostrel::inspection
