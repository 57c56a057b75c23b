#pragma once

#include "cppmicroservices/Any.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace cppmicroservices::detail::ldap {

enum class Operator { equal, approximate, atLeast, atMost };

/// What an unescaped '*' becomes in an operand. The byte itself, written in a filter, so is a wildcard as well, and it
/// takes part with this value where wildcards have no meaning: in `>=`, `<=` and `~=`.
constexpr char wildcard = '\x7f';

/// One `(attribute OP operand)`. Everything that depends on the operand alone is worked out on construction, so that
/// comparing allocates nothing.
class Comparison {
public:
    Comparison(std::string attribute, Operator op, std::string operand);

    const std::string& attribute() const { return m_attribute; }

    /// markOf(attribute())
    std::uint32_t mark() const { return m_mark; }

    /// Compares by the type of the value; nothing matches an empty one, and only `=*` a type that filters do not know.
    bool matches(const Any& value) const;

    /// The operand, if only a string that equals it matches `=`.
    std::optional<std::string_view> exactText() const;

    /// The operand, if only the number that it begins with matches `=`.
    std::optional<long> exactNumber() const;

private:
    bool matchesText(std::string_view text) const;
    bool matchesTruth(bool truth) const;
    template <class Integer>
    bool matchesInteger(Integer value) const;
    template <class Real>
    bool matchesReal(Real value) const;
    template <class List>
    bool matchesAnyOf(const List& list) const;

    std::string m_attribute;
    std::uint32_t m_mark;
    Operator m_operator;
    std::string m_operand;
    std::string m_approximated; ///< the operand of `~=` without blanks, in lower case
    bool m_presence = false;    ///< `=*`
    bool m_pattern = false;     ///< the operand has wildcards
    std::optional<long> m_integer;
    std::optional<double> m_real;
};

} // namespace cppmicroservices::detail::ldap
