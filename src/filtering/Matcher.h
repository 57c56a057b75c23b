#pragma once

#include <cppmicroservices/Any.h>

#include <string>
#include <unordered_map>
#include <utility>

/// The rule by which a filter declaration admits its subject: the one that checkFilter() decides by, and that its
/// explanations follow.
namespace ostrel::filtering {

/// Attribute name to (expected text, required flag).
using Conditions = std::unordered_map<std::string, std::pair<std::string, bool>>;

enum class Verdict {
    matches,
    valueDiffers,     ///< an attribute has another text than the condition of its name
    requiredNotNamed, ///< there are required attributes, and it names none of them
    notAMap,
};

/// What becomes of one alternative of a declaration.
struct Judgement {
    Verdict verdict;
    std::string attribute = {}; ///< the first that differs, in the order of the map
    std::string declared = {};  ///< its text
};

bool anyRequired(const Conditions& conditions);

/// @throws what rendering the text of a value throws, of those up to the first that differs
Judgement judge(const cppmicroservices::Any& alternative, const Conditions& conditions);

} // namespace ostrel::filtering
