#pragma once

#include "ldap/Comparison.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cppmicroservices::detail::ldap {

/// What every match of a filter must have. A registry that is indexed by these looks at fewer candidates; each
/// candidate must still be matched.
struct Requirements {
    std::optional<long> serviceId;                   ///< the property service.id is this number
    std::optional<std::vector<std::string>> classes; ///< the property objectclass holds one of these, without doubles
};

/// A parsed filter: comparisons in the order of the text, each with the place to go on at when it is true and when it
/// is not. So matching needs neither recursion nor memory, however deeply the text is nested.
struct Expression {
    static constexpr std::size_t accept = static_cast<std::size_t>(-1);
    static constexpr std::size_t reject = static_cast<std::size_t>(-2);

    struct Step {
        Comparison comparison;
        std::size_t onTrue = accept;
        std::size_t onFalse = reject;
    };

    std::vector<Step> steps;
    std::string text; ///< in normal form
    Requirements requirements;

    /// @param find  gives the value of a comparison's attribute (`const Any*`), or null when there is none
    template <class Find>
    bool matches(Find&& find) const
    {
        std::size_t at = 0;
        while (at < steps.size()) {
            const Step& step = steps[at];
            const Any* const value = find(step.comparison);
            at = value && step.comparison.matches(*value) ? step.onTrue : step.onFalse;
        }
        return at == accept;
    }
};

/// One operand of an expression under construction: where it begins, and the jumps that leave it.
class Part {
public:
    static Part of(std::size_t step, const Comparison& comparison);

private:
    friend class Group;
    friend void finish(Part part, Expression& expression);

    using Jumps = std::vector<std::pair<std::size_t, bool>>; ///< step, and which of its two jumps

    static void lead(const Jumps& jumps, std::size_t to, Expression& expression);

    std::size_t m_first = 0;
    Jumps m_whenTrue;
    Jumps m_whenFalse;
    Requirements m_requirements;
};

/// An `&`, `|` or `!` whose operands are still being read.
class Group {
public:
    explicit Group(char sign) : m_sign(sign) {}

    void add(Part part, Expression& expression);
    Part close() &&;

    /// False for a `!` of several operands.
    bool isComplete() const { return m_sign != '!' || m_size == 1; }

private:
    void require(Requirements requirements);

    char m_sign;
    std::size_t m_size = 0;
    Part m_part;
};

void finish(Part part, Expression& expression);

} // namespace cppmicroservices::detail::ldap
