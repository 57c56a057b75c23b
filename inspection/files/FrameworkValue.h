#pragma once

#include "bundle_reader/manifest/Json.h"

#include <cppmicroservices/Any.h>

#include <optional>
#include <string>

namespace ostrel::inspection {

/// What frameworks hold of a value of a manifest; an empty Any of what they leave out.
cppmicroservices::Any toAny(const bundle_reader::JsonValue& value);

/// "zq.component.name" as the container reads it; none when the start would end there.
std::optional<std::string> componentNameOf(const bundle_reader::JsonValue& manifest);

} // namespace ostrel::inspection
