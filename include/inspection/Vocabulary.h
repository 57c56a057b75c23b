#pragma once

#include "inspection/Condition.h"

#include <cppmicroservices/Any.h>
#include <cppmicroservices/ServiceReferenceBase.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace ostrel::inspection {

/// The names that declarations know, each with the texts that are declared for it; both in byte order.
using Vocabulary = std::map<std::string, std::set<std::string>>;

/// Adds what a declaration knows. Values that cannot be written as text are left out.
///
/// @throws std::bad_alloc
OSTREL_INSPECTION_EXPORT void addDeclared(Vocabulary& vocabulary, const cppmicroservices::Any& filters);

/// The same for the declaration of a service's properties.
OSTREL_INSPECTION_EXPORT void addDeclaredBy(Vocabulary& vocabulary,
                                            const cppmicroservices::ServiceReferenceBase& service);

/// A condition that no declaration knows: it admits and refuses nothing, unless it is required.
struct UndeclaredCondition {
    std::string name;
    std::string nearest; ///< the declared name that was most likely meant; "" when none is near
};

OSTREL_INSPECTION_EXPORT std::vector<UndeclaredCondition> undeclaredConditions(const Conditions& conditions,
                                                                               const Vocabulary& vocabulary);

} // namespace ostrel::inspection
