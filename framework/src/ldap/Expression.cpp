#include "ldap/Expression.h"

#include "cppmicroservices/AnyMap.h"

#include <algorithm>
#include <iterator>

namespace cppmicroservices::detail::ldap {

namespace {

/// Order does not matter. The fewer ones move, or else a deeply nested filter would cost the square of its depth.
template <class Item>
void append(std::vector<Item>& to, std::vector<Item>&& from)
{
    if (to.size() < from.size()) {
        std::swap(to, from);
    }
    to.insert(to.end(), std::make_move_iterator(from.begin()), std::make_move_iterator(from.end()));
}

bool isNamed(const Comparison& comparison, const char* name)
{
    return detail::any_map_ciequal{}(comparison.attribute(), name);
}

} // namespace

Part Part::of(std::size_t step, const Comparison& comparison)
{
    Part part;
    part.m_first = step;
    part.m_whenTrue.emplace_back(step, true);
    part.m_whenFalse.emplace_back(step, false);
    if (const auto name = comparison.exactText(); name && isNamed(comparison, "objectclass")) {
        part.m_requirements.classes.emplace({std::string(*name)});
    }
    if (isNamed(comparison, "service.id")) {
        part.m_requirements.serviceId = comparison.exactNumber();
    }
    return part;
}

void Part::lead(const Jumps& jumps, std::size_t to, Expression& expression)
{
    for (const auto& [step, whenTrue] : jumps) {
        (whenTrue ? expression.steps[step].onTrue : expression.steps[step].onFalse) = to;
    }
}

void Group::add(Part part, Expression& expression)
{
    // An '|' goes on to its next operand where this one is false, the others where it is true.
    const bool any = m_sign == '|';
    auto& next = any ? m_part.m_whenFalse : m_part.m_whenTrue;
    auto& decided = any ? m_part.m_whenTrue : m_part.m_whenFalse;
    if (m_size == 0) {
        m_part.m_first = part.m_first;
    } else {
        Part::lead(next, part.m_first, expression);
    }
    next = std::move(any ? part.m_whenFalse : part.m_whenTrue);
    append(decided, std::move(any ? part.m_whenTrue : part.m_whenFalse));
    require(std::move(part.m_requirements));
    ++m_size;
}

void Group::require(Requirements requirements)
{
    auto& own = m_part.m_requirements;
    if (m_size == 0 && m_sign != '!') {
        own = std::move(requirements);
        return;
    }
    if (m_sign == '&') {
        if (!own.serviceId) {
            own.serviceId = requirements.serviceId;
        }
        if (requirements.classes && (!own.classes || requirements.classes->size() < own.classes->size())) {
            own.classes = std::move(requirements.classes);
        }
        return;
    }
    if (own.serviceId != requirements.serviceId) {
        own.serviceId.reset();
    }
    if (!own.classes || !requirements.classes) {
        own.classes.reset();
        return;
    }
    append(*own.classes, std::move(*requirements.classes));
}

Part Group::close() &&
{
    if (m_sign == '!') {
        std::swap(m_part.m_whenTrue, m_part.m_whenFalse);
        m_part.m_requirements = {};
    }
    return std::move(m_part);
}

void finish(Part part, Expression& expression)
{
    Part::lead(part.m_whenTrue, Expression::accept, expression);
    Part::lead(part.m_whenFalse, Expression::reject, expression);
    expression.requirements = std::move(part.m_requirements);
    if (auto& classes = expression.requirements.classes) {
        std::sort(classes->begin(), classes->end());
        classes->erase(std::unique(classes->begin(), classes->end()), classes->end());
    }
}

} // namespace cppmicroservices::detail::ldap
