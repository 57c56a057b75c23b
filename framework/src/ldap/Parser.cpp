#include "ldap/Parser.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace cppmicroservices::detail::ldap {

namespace {

constexpr std::string_view blanks = " \t\n\v\f\r";

class Parser {
public:
    explicit Parser(std::string_view text) : m_text(text) {}

    Expression parse();

private:
    Part readComparison();
    std::string readAttribute();
    Operator readOperator();
    std::string readOperand();
    void readOpening();
    void checkEnd() const;

    char current() const;
    std::string rest() const { return std::string(m_text.substr(m_at)); }
    void skipBlanks();
    void writeOperand(std::string_view operand);

    [[noreturn]] void malformed() const { throw std::invalid_argument("Malformed query: " + rest()); }

    std::string_view m_text;
    std::size_t m_at = 0;
    Expression m_expression;
};

Expression Parser::parse()
{
    if (m_text.empty()) {
        throw std::invalid_argument("Null query: ");
    }
    std::vector<Group> open;
    for (;;) {
        readOpening();
        if (const char sign = current(); sign == '&' || sign == '|' || sign == '!') {
            ++m_at;
            m_expression.text += sign;
            open.emplace_back(sign);
            continue;
        }
        Part part = readComparison();
        bool another = false;
        while (!open.empty() && !another) {
            // Moved from only until close() below gives the next one.
            open.back().add(std::move(part), m_expression); // NOLINT(bugprone-use-after-move)
            skipBlanks();
            another = current() != ')';
            if (!another) {
                ++m_at;
                m_expression.text += ')';
                if (!open.back().isComplete()) {
                    malformed();
                }
                part = std::move(open.back()).close();
                open.pop_back();
            }
        }
        if (!another) {
            checkEnd();
            finish(std::move(part), m_expression);
            return std::move(m_expression);
        }
    }
}

char Parser::current() const
{
    if (m_at == m_text.size()) {
        throw std::invalid_argument("Unexpected end of query: ");
    }
    return m_text[m_at];
}

void Parser::skipBlanks()
{
    m_at = std::min(m_text.find_first_not_of(blanks, m_at), m_text.size());
}

void Parser::readOpening()
{
    skipBlanks();
    if (current() != '(') {
        malformed();
    }
    ++m_at;
    m_expression.text += '(';
    skipBlanks();
}

void Parser::checkEnd() const
{
    // Elsewhere any white space is passed over; behind the filter only blanks are.
    if (m_text.find_first_not_of(' ', m_at) != std::string_view::npos) {
        throw std::invalid_argument("Trailing garbage '" + rest() + "': " + rest());
    }
}

Part Parser::readComparison()
{
    std::string attribute = readAttribute();
    const Operator op = readOperator();
    std::string operand = readOperand();
    m_expression.text += ')';
    const auto& step =
        m_expression.steps.emplace_back(Expression::Step{Comparison(std::move(attribute), op, std::move(operand))});
    return Part::of(m_expression.steps.size() - 1, step.comparison);
}

std::string Parser::readAttribute()
{
    const auto begin = m_at;
    m_at = std::min(m_text.find_first_of("()=<>~", begin), m_text.size());
    current();
    const auto name = m_text.substr(begin, m_at - begin);
    const auto last = name.find_last_not_of(blanks);
    if (last == std::string_view::npos) {
        m_at = begin;
        malformed();
    }
    m_expression.text += name.substr(0, last + 1);
    return std::string(name.substr(0, last + 1));
}

Operator Parser::readOperator()
{
    const auto sign = m_text.substr(m_at, 2);
    if (sign.front() == '=') {
        m_at += 1;
        m_expression.text += '=';
        return Operator::equal;
    }
    if (sign != "~=" && sign != ">=" && sign != "<=") {
        throw std::invalid_argument("Undefined operator: " + rest());
    }
    m_at += 2;
    m_expression.text += sign;
    return sign == "~=" ? Operator::approximate : sign == ">=" ? Operator::atLeast : Operator::atMost;
}

std::string Parser::readOperand()
{
    std::string operand;
    // Brackets that come in pairs belong to the operand, escaped or not.
    std::size_t unclosed = 0;
    for (;; ++m_at) {
        char c = current();
        if (c == ')' && unclosed == 0) {
            ++m_at;
            writeOperand(operand);
            return operand;
        }
        if (c == '\\') {
            ++m_at;
            c = current();
        } else if (c == '(') {
            ++unclosed;
        } else if (c == ')') {
            --unclosed;
        } else if (c == '*') {
            c = wildcard;
        }
        operand += c;
    }
}

void Parser::writeOperand(std::string_view operand)
{
    for (const char c : operand) {
        if (c == wildcard) {
            m_expression.text += '*';
            continue;
        }
        if (c == '\\' || c == '(' || c == ')' || c == '*') {
            m_expression.text += '\\';
        }
        m_expression.text += c;
    }
}

} // namespace

Expression parse(const std::string& text)
{
    return Parser(text).parse();
}

} // namespace cppmicroservices::detail::ldap
