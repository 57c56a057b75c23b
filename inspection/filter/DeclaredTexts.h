#pragma once

#include <cppmicroservices/Any.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ostrel::inspection {

/// The texts of a declaration, read once; it must live as long as this.
struct DeclaredTexts {
    /// Attributes in the map's own order, each with its text where it has one.
    using Alternative = std::vector<std::pair<const std::string*, std::optional<std::string>>>;

    bool isList = false;
    bool isPlain = true;                   ///< all values are of types for which JSON is never refused
    std::vector<Alternative> alternatives; ///< those that are maps
};

/// @throws std::bad_alloc
DeclaredTexts readTexts(const cppmicroservices::Any& filters);

} // namespace ostrel::inspection
