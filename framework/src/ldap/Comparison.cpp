#include "ldap/Comparison.h"

#include "ldap/PropertyTable.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <type_traits>

namespace cppmicroservices::detail::ldap {

namespace {

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

char folded(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string approximated(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        if (!isBlank(c)) {
            result += folded(c);
        }
    }
    return result;
}

/// True when `text`, its blanks and case disregarded, is `wanted`.
bool equalsApproximately(std::string_view text, std::string_view wanted)
{
    std::size_t at = 0;
    for (const char c : text) {
        if (isBlank(c)) {
            continue;
        }
        if (at == wanted.size() || folded(c) != wanted[at]) {
            return false;
        }
        ++at;
    }
    return at == wanted.size();
}

/// Only the last wildcard is ever taken back, so the cost is bounded by the product of the two lengths.
bool matchesPattern(std::string_view text, std::string_view pattern)
{
    std::size_t t = 0;
    std::size_t p = 0;
    std::size_t lastWildcard = std::string_view::npos;
    std::size_t resume = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == wildcard) {
            lastWildcard = p++;
            resume = t;
        } else if (p < pattern.size() && pattern[p] == text[t]) {
            ++p;
            ++t;
        } else if (lastWildcard != std::string_view::npos) {
            p = lastWildcard + 1;
            t = ++resume;
        } else {
            return false;
        }
    }
    return std::all_of(pattern.begin() + static_cast<std::ptrdiff_t>(p), pattern.end(),
                       [](char c) { return c == wildcard; });
}

/// The number that `text` begins with; none when there is none or it is out of range.
template <class Number, class Read>
std::optional<Number> leadingNumber(const std::string& text, Read read)
{
    const int errnoBefore = errno;
    errno = 0;
    char* end = nullptr;
    const Number number = read(text.c_str(), &end);
    bool usable = end != text.c_str() && errno != ERANGE;
    if constexpr (std::is_floating_point_v<Number>) {
        // Numbers so small that digits are lost report a range error as well, but are numbers.
        usable = end != text.c_str() && (errno != ERANGE || (number != 0 && std::isfinite(number)));
    }
    errno = errnoBefore;
    return usable ? std::optional<Number>{number} : std::nullopt;
}

} // namespace

Comparison::Comparison(std::string attribute, Operator op, std::string operand)
    : m_attribute(std::move(attribute)),
      m_mark(markOf(m_attribute)),
      m_operator(op),
      m_operand(std::move(operand)),
      m_approximated(op == Operator::approximate ? approximated(m_operand) : std::string{}),
      m_presence(op == Operator::equal && m_operand.size() == 1 && m_operand.front() == wildcard),
      m_pattern(m_operand.find(wildcard) != std::string::npos),
      m_integer(
          leadingNumber<long>(m_operand, [](const char* text, char** end) { return std::strtol(text, end, 10); })),
      m_real(leadingNumber<double>(m_operand, &std::strtod))
{
}

bool Comparison::matches(const Any& value) const
{
    if (value.Empty()) {
        return false;
    }
    if (m_presence) {
        return true;
    }
    // The usual types of properties come first: each question costs a comparison of type names.
    if (const auto* const text = any_cast<std::string>(&value)) {
        return matchesText(*text);
    }
    if (const auto* const texts = any_cast<std::vector<std::string>>(&value)) {
        return matchesAnyOf(*texts);
    }
    if (const auto* const number = any_cast<long>(&value)) {
        return matchesInteger(*number);
    }
    if (const auto* const number = any_cast<int>(&value)) {
        return matchesInteger(*number);
    }
    if (const auto* const truth = any_cast<bool>(&value)) {
        return matchesTruth(*truth);
    }
    if (const auto* const number = any_cast<double>(&value)) {
        return matchesReal(*number);
    }
    if (const auto* const values = any_cast<std::vector<Any>>(&value)) {
        return std::any_of(values->begin(), values->end(), [this](const Any& item) { return matches(item); });
    }
    if (const auto* const texts = any_cast<std::list<std::string>>(&value)) {
        return matchesAnyOf(*texts);
    }
    if (const auto* const text = any_cast<const char*>(&value)) {
        return *text != nullptr && matchesText(*text);
    }
    if (const auto* const number = any_cast<float>(&value)) {
        return matchesReal(*number);
    }
    if (const auto* const character = any_cast<char>(&value)) {
        return matchesText(std::string_view(character, 1));
    }
    if (const auto* const number = any_cast<short>(&value)) {
        return matchesInteger(*number);
    }
    if (const auto* const number = any_cast<long long>(&value)) {
        return matchesInteger(*number);
    }
    if (const auto* const number = any_cast<unsigned char>(&value)) {
        return matchesInteger(*number);
    }
    if (const auto* const number = any_cast<unsigned short>(&value)) {
        return matchesInteger(*number);
    }
    if (const auto* const number = any_cast<unsigned int>(&value)) {
        return matchesInteger(*number);
    }
    if (const auto* const number = any_cast<unsigned long>(&value)) {
        return matchesInteger(*number);
    }
    if (const auto* const number = any_cast<unsigned long long>(&value)) {
        return matchesInteger(*number);
    }
    return false;
}

std::optional<std::string_view> Comparison::exactText() const
{
    return m_operator == Operator::equal && !m_pattern ? std::optional<std::string_view>{m_operand} : std::nullopt;
}

std::optional<long> Comparison::exactNumber() const
{
    return m_operator == Operator::equal && !m_presence ? m_integer : std::nullopt;
}

bool Comparison::matchesText(std::string_view text) const
{
    switch (m_operator) {
    case Operator::equal:
        return m_pattern ? matchesPattern(text, m_operand) : text == m_operand;
    case Operator::approximate:
        return equalsApproximately(text, m_approximated);
    case Operator::atLeast:
        return text >= m_operand;
    case Operator::atMost:
        break;
    }
    return text <= m_operand;
}

bool Comparison::matchesTruth(bool truth) const
{
    if (m_operator != Operator::equal && m_operator != Operator::approximate) {
        return false;
    }
    // Beginnings count: (k=t) and even (k=) are true of a property that is true.
    const std::string_view word = truth ? "true" : "false";
    return m_operand.size() <= word.size() &&
           std::equal(m_operand.begin(), m_operand.end(), word.begin(),
                      [](char given, char wanted) { return folded(given) == wanted; });
}

template <class Integer>
bool Comparison::matchesInteger(Integer value) const
{
    if (!m_integer) {
        return false;
    }
    // Read as a long and then brought to the property's type, whatever that cuts off.
    const auto operand = static_cast<Integer>(*m_integer);
    switch (m_operator) {
    case Operator::equal:
    case Operator::approximate:
        return value == operand;
    case Operator::atLeast:
        return value >= operand;
    case Operator::atMost:
        break;
    }
    return value <= operand;
}

template <class Real>
bool Comparison::matchesReal(Real value) const
{
    if (!m_real) {
        return false;
    }
    const double number = value;
    switch (m_operator) {
    case Operator::equal:
    case Operator::approximate:
        return std::fabs(number - *m_real) < std::numeric_limits<Real>::epsilon();
    case Operator::atLeast:
        return number >= *m_real;
    case Operator::atMost:
        break;
    }
    return number <= *m_real;
}

template <class List>
bool Comparison::matchesAnyOf(const List& list) const
{
    return std::any_of(list.begin(), list.end(), [this](const std::string& item) { return matchesText(item); });
}

} // namespace cppmicroservices::detail::ldap
