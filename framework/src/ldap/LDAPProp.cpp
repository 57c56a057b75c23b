#include "cppmicroservices/LDAPProp.h"

#include <stdexcept>
#include <utility>

namespace cppmicroservices {

LDAPPropExpr::LDAPPropExpr() = default;

LDAPPropExpr::LDAPPropExpr(std::string expr) : m_text(std::move(expr)) {}

LDAPPropExpr& LDAPPropExpr::operator!()
{
    if (!IsNull()) {
        m_text = "(!" + m_text + ")";
    }
    return *this;
}

LDAPPropExpr::operator std::string() const
{
    return m_text;
}

bool LDAPPropExpr::IsNull() const
{
    return m_text.empty();
}

LDAPPropExpr& LDAPPropExpr::operator|=(LDAPPropExpr const& right)
{
    return *this = *this || right;
}

LDAPPropExpr& LDAPPropExpr::operator&=(LDAPPropExpr const& right)
{
    return *this = *this && right;
}

LDAPProp::LDAPProp(std::string property) : m_property(std::move(property))
{
    if (m_property.empty()) {
        throw std::invalid_argument("property must not be empty");
    }
}

LDAPPropExpr LDAPProp::operator==(std::string const& s) const
{
    return compared("=", s);
}

LDAPPropExpr LDAPProp::operator==(Any const& s) const
{
    return compared("=", s.ToString());
}

LDAPPropExpr LDAPProp::operator==(bool b) const
{
    return compared("=", b ? "true" : "false");
}

LDAPProp::operator LDAPPropExpr() const
{
    return equalTo("*");
}

LDAPPropExpr LDAPProp::operator!() const
{
    return !equalTo("*");
}

LDAPPropExpr LDAPProp::operator!=(std::string const& s) const
{
    return !compared("=", s);
}

LDAPPropExpr LDAPProp::operator!=(Any const& s) const
{
    return !compared("=", s.ToString());
}

LDAPPropExpr LDAPProp::operator>=(std::string const& s) const
{
    return compared(">=", s);
}

LDAPPropExpr LDAPProp::operator>=(Any const& s) const
{
    return compared(">=", s.ToString());
}

LDAPPropExpr LDAPProp::operator<=(std::string const& s) const
{
    return compared("<=", s);
}

LDAPPropExpr LDAPProp::operator<=(Any const& s) const
{
    return compared("<=", s.ToString());
}

LDAPPropExpr LDAPProp::Approx(std::string const& s) const
{
    return compared("~=", s);
}

LDAPPropExpr LDAPProp::Approx(Any const& s) const
{
    return compared("~=", s.ToString());
}

LDAPPropExpr LDAPProp::equalTo(std::string const& text) const
{
    return LDAPPropExpr("(" + m_property + "=" + text + ")");
}

LDAPPropExpr LDAPProp::compared(char const* comparison, std::string const& text) const
{
    return text.empty() ? LDAPPropExpr() : LDAPPropExpr("(" + m_property + comparison + text + ")");
}

} // namespace cppmicroservices

namespace {

cppmicroservices::LDAPPropExpr combined(char const* combination, cppmicroservices::LDAPPropExpr const& left,
                                        cppmicroservices::LDAPPropExpr const& right)
{
    if (left.IsNull() || right.IsNull()) {
        return left.IsNull() ? right : left;
    }
    return cppmicroservices::LDAPPropExpr(combination + std::string(left) + std::string(right) + ")");
}

} // namespace

cppmicroservices::LDAPPropExpr operator&&(cppmicroservices::LDAPPropExpr const& left,
                                          cppmicroservices::LDAPPropExpr const& right)
{
    return combined("(&", left, right);
}

cppmicroservices::LDAPPropExpr operator||(cppmicroservices::LDAPPropExpr const& left,
                                          cppmicroservices::LDAPPropExpr const& right)
{
    return combined("(|", left, right);
}
