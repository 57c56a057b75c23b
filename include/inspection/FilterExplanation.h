#pragma once

#include "inspection/Condition.h"

#include <cppmicroservices/Any.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Why a container does what it does, as plain values that can be compared, printed and tested.
namespace ostrel::inspection {

/// What decided about a declaration, or about a bundle or service before its declaration was looked at.
enum class Reason {
    alternativeMatches,       ///< admitted
    noDeclaration,            ///< admitted
    noDeclarationButRequired, ///< refused
    notAList,                 ///< admitted, as if there were no declaration
    notAListButRequired,      ///< refused
    emptyList,                ///< refused
    noMap,                    ///< refused: a list without any map
    valueDiffers,             ///< refused: some alternative has another text than a condition
    requiredNotNamed,         ///< refused: no alternative names any required attribute
    unreadable,               ///< admitted: a text cannot be rendered
    noZqMap,                  ///< a service without the property "zq", or with one that is no map: admitted unasked
    noComponentName,          ///< a bundle without: the start ends
};

/// What became of an alternative.
enum class Verdict { matches, valueDiffers, requiredNotNamed, notAMap, unreadable, notReached };

/// "alternative-matches" and so on, as JSON and documents name them.
OSTREL_INSPECTION_EXPORT std::string_view toText(Reason reason);
OSTREL_INSPECTION_EXPORT std::string_view toText(Verdict verdict);

/// An attribute whose declared text is another than that of the condition of its name.
struct Difference {
    std::string attribute;
    std::string declared;
    std::string condition;
};

struct Alternative {
    Verdict verdict = Verdict::notReached;
    std::vector<Difference> differs;  ///< the first one, which decides; empty unless a value differs
    std::vector<std::string> missing; ///< all required names, in byte order, when none of them is named
};

struct FilterExplanation {
    bool admitted = false;
    Reason reason = Reason::noDeclaration;
    std::vector<Alternative> alternatives; ///< each of the list, in its order
    std::vector<std::string> hints;        ///< sentences about what the answer does not show

    /// The conditions after the smallest change that admits; none when it is admitted already, or when no change does.
    std::optional<Conditions> change;
};

/// Explains how us_container::checkFilter() decides about a declaration while the severities of its records are masked.
///
/// The change is the one with the fewest edits; an edit adds a condition, with the required flag or without, gives one
/// another value, sets or clears its flag, or drops it. Names are those of the conditions and of the declaration that
/// the options of `ostrel-host` can carry (not empty, without '=' and zero bytes); values are the texts declared for
/// the name. Of several such changes the first counts when names are gone through in byte order, and for each: change,
/// clear, change and clear, drop, set, change and set, add, add required, untouched; then the smaller value. It was
/// proven by deciding once more.
///
/// @throws std::bad_alloc
/// @locks  none
/// @logs   nothing
/// @cost   of what is admitted that of the decision; of what is refused a look at each alternative for each way to
/// treat
///         each name, so that it is quadratic in alternatives that declare as many texts of one name
OSTREL_INSPECTION_EXPORT FilterExplanation explainFilter(const cppmicroservices::Any& filters,
                                                         const us_container::FilterMap& filterMap);

} // namespace ostrel::inspection
