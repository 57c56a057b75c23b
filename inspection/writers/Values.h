#pragma once

#include "inspection/Condition.h"
#include "inspection/Finding.h"
#include "inspection/json/JsonObject.h"

#include <string_view>
#include <vector>

/// What several outputs hold.
namespace ostrel::inspection {

/// With "schema" and "tool".
JsonObject topLevel(std::string_view schema, std::string_view tool);

std::vector<JsonValue> toJsonValues(const Conditions& conditions);
std::vector<JsonValue> toJsonValues(const std::vector<Finding>& findings);
std::vector<JsonValue> toJsonValues(const std::vector<PassedOver>& files);

} // namespace ostrel::inspection
