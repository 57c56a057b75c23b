#include "inspection/Vocabulary.h"

#include "inspection/filter/Attempt.h"
#include "text/Nearest.h"

#include <cppmicroservices/AnyMap.h>

#include <typeinfo>

namespace ostrel::inspection {

using cppmicroservices::Any;
using cppmicroservices::AnyMap;

void addDeclared(Vocabulary& vocabulary, const Any& filters)
{
    if (filters.Type() != typeid(std::vector<Any>)) {
        return; // it is not looked into
    }
    for (const Any& alternative : cppmicroservices::ref_any_cast<std::vector<Any>>(filters)) {
        if (alternative.Type() != typeid(AnyMap)) {
            continue;
        }
        for (const auto& [name, value] : cppmicroservices::ref_any_cast<AnyMap>(alternative)) {
            std::set<std::string>& values = vocabulary[name];
            const Any& declared = value;
            if (auto text = attempted([&declared] { return declared.ToString(); })) {
                values.insert(std::move(*text));
            }
        }
    }
}

void addDeclaredBy(Vocabulary& vocabulary, const cppmicroservices::ServiceReferenceBase& service)
{
    const Any zq = service.GetProperty("zq");
    if (zq.Type() == typeid(AnyMap)) {
        const auto& map = cppmicroservices::ref_any_cast<AnyMap>(zq);
        addDeclared(vocabulary, map.AtCompoundKey("ostrelStartupLoadFilters", Any{}));
    }
}

std::vector<UndeclaredCondition> undeclaredConditions(const Conditions& conditions, const Vocabulary& vocabulary)
{
    std::vector<std::string_view> known;
    known.reserve(vocabulary.size());
    for (const auto& entry : vocabulary) {
        known.emplace_back(entry.first);
    }
    std::vector<UndeclaredCondition> undeclared;
    for (const Condition& condition : conditions) {
        if (vocabulary.count(condition.name) == 0) {
            undeclared.push_back({condition.name, std::string{text::nearest(condition.name, known)}});
        }
    }
    return undeclared;
}

} // namespace ostrel::inspection
