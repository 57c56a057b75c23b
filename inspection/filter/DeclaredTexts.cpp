#include "inspection/filter/DeclaredTexts.h"

#include "inspection/filter/Attempt.h"

#include <cppmicroservices/AnyMap.h>

#include <typeinfo>

namespace ostrel::inspection {

using cppmicroservices::Any;
using cppmicroservices::AnyMap;

namespace {

bool isPlain(const Any& value)
{
    const std::type_info& type = value.Type();
    return type == typeid(std::string) || type == typeid(int) || type == typeid(bool) || type == typeid(double);
}

} // namespace

DeclaredTexts readTexts(const Any& filters)
{
    DeclaredTexts texts;
    texts.isList = filters.Type() == typeid(std::vector<Any>);
    if (!texts.isList) {
        texts.isPlain = filters.Empty() || isPlain(filters);
        return texts;
    }
    for (const Any& element : cppmicroservices::ref_any_cast<std::vector<Any>>(filters)) {
        if (element.Type() != typeid(AnyMap)) {
            texts.isPlain = texts.isPlain && isPlain(element);
            continue;
        }
        const auto& map = cppmicroservices::ref_any_cast<AnyMap>(element);
        DeclaredTexts::Alternative alternative;
        alternative.reserve(map.size());
        for (const auto& entry : map) {
            alternative.emplace_back(&entry.first, attempted([&entry] { return entry.second.ToString(); }));
            texts.isPlain = texts.isPlain && isPlain(entry.second);
        }
        texts.alternatives.push_back(std::move(alternative));
    }
    return texts;
}

} // namespace ostrel::inspection
