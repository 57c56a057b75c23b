#pragma once

#include "cppmicroservices/Any.h"
#include "cppmicroservices/FrameworkConfig.h"

#include <sstream>
#include <string>

namespace cppmicroservices {

/// A condition on properties under construction; becomes the text of a filter.
///
/// A null expression is the empty text, and the other operand is the result of combining it with one. Nothing is
/// checked or escaped here: LDAPFilter's constructor says what is wrong with the text.
class US_Framework_EXPORT LDAPPropExpr {
public:
    /// A null expression.
    LDAPPropExpr();
    explicit LDAPPropExpr(std::string expr);

    /// Negates this expression, unless it is null.
    LDAPPropExpr& operator!();

    /// The filter's text.
    operator std::string() const;

    bool IsNull() const;

    LDAPPropExpr& operator|=(LDAPPropExpr const& right);
    LDAPPropExpr& operator&=(LDAPPropExpr const& right);

private:
    std::string m_text;
};

/// The name of a property, from which operators make conditions: `LDAPProp("colour") == "red" && !LDAPProp("old")`.
///
/// A value is compared by its text: that of Any::ToString() or of `<<`, but "true" and "false" where a bool is compared
/// by `==`. An empty std::string, and an Any of one, give a null expression.
class US_Framework_EXPORT LDAPProp {
public:
    /// @throws std::invalid_argument "property must not be empty"
    LDAPProp(std::string property);
    LDAPProp(LDAPProp const&) = default;

    LDAPPropExpr operator==(std::string const& s) const;

    /// @throws std::logic_error for an empty Any, as all overloads for one
    LDAPPropExpr operator==(Any const& s) const;
    LDAPPropExpr operator==(bool b) const;
    template <class T>
    LDAPPropExpr operator==(T const& s) const
    {
        return equalTo(textOf(s));
    }

    /// "The property is there": (name=*).
    operator LDAPPropExpr() const;

    /// "The property is not there".
    LDAPPropExpr operator!() const;

    LDAPPropExpr operator!=(std::string const& s) const;
    LDAPPropExpr operator!=(Any const& s) const;
    template <class T>
    LDAPPropExpr operator!=(T const& s) const
    {
        return operator!=(textOf(s));
    }

    LDAPPropExpr operator>=(std::string const& s) const;
    LDAPPropExpr operator>=(Any const& s) const;
    template <class T>
    LDAPPropExpr operator>=(T const& s) const
    {
        return operator>=(textOf(s));
    }

    LDAPPropExpr operator<=(std::string const& s) const;
    LDAPPropExpr operator<=(Any const& s) const;
    template <class T>
    LDAPPropExpr operator<=(T const& s) const
    {
        return operator<=(textOf(s));
    }

    /// Equal but for case and blanks.
    LDAPPropExpr Approx(std::string const& s) const;
    LDAPPropExpr Approx(Any const& s) const;
    template <class T>
    LDAPPropExpr Approx(T const& s) const
    {
        return Approx(textOf(s));
    }

private:
    LDAPProp& operator=(LDAPProp const&) = delete;

    template <class T>
    static std::string textOf(T const& value)
    {
        std::stringstream text;
        text << value;
        return text.str();
    }

    LDAPPropExpr equalTo(std::string const& text) const;
    LDAPPropExpr compared(char const* comparison, std::string const& text) const;

    std::string m_property;
};

} // namespace cppmicroservices

US_Framework_EXPORT cppmicroservices::LDAPPropExpr operator&&(cppmicroservices::LDAPPropExpr const& left,
                                                              cppmicroservices::LDAPPropExpr const& right);

US_Framework_EXPORT cppmicroservices::LDAPPropExpr operator||(cppmicroservices::LDAPPropExpr const& left,
                                                              cppmicroservices::LDAPPropExpr const& right);
