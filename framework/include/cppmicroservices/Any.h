#pragma once

#include "cppmicroservices/FrameworkConfig.h"
#include "cppmicroservices/detail/AnyText.h"

#include <algorithm>
#include <array>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

namespace cppmicroservices {

namespace any::detail {

template <typename T, typename = void>
struct has_op_eq : std::false_type {
};

template <typename T>
struct has_op_eq<T, std::void_t<decltype(static_cast<bool>(std::declval<T const&>() == std::declval<T const&>()))>>
    : std::true_type {
};

/// Values of a type without `==` are never equal.
template <typename T>
bool compare([[maybe_unused]] T const& lhs, [[maybe_unused]] T const& rhs)
{
    if constexpr (has_op_eq<T>::value) {
        return lhs == rhs;
    } else {
        return false;
    }
}

} // namespace any::detail

template <typename ValueType>
ValueType& ref_any_cast(Any& operand);
template <typename ValueType>
ValueType const& ref_any_cast(Any const& operand);

/// A value of any copyable type that can be written to a stream, or nothing.
///
/// It holds exactly the static type that it was given: `Any(5L)` holds a `long`, and casts to nothing else. Types are
/// compared by name, so a value made in one library can be read in another, hidden visibility or not. A moved-from Any
/// is empty. Distinct objects may be used by several threads; one object as any standard container.
class US_Framework_EXPORT Any {
public:
    Any();

    /// Holds a copy of `value`.
    template <typename ValueType>
    Any(ValueType const& value) : m_content(std::make_unique<Holder<ValueType>>(value))
    {
    }

    /// Holds what was moved from `value`, a temporary or the result of std::move.
    template <typename ValueType,
              std::enable_if_t<!std::is_lvalue_reference_v<ValueType> && !std::is_const_v<ValueType>, bool> = true>
    Any(ValueType&& value) : m_content(std::make_unique<Holder<ValueType>>(std::move(value)))
    {
    }

    Any(Any const& other) : m_content(other.m_content ? other.m_content->clone() : nullptr) {}
    Any(Any&& other) noexcept : m_content(std::move(other.m_content)) {}
    ~Any();

    Any& Swap(Any& rhs)
    {
        std::swap(m_content, rhs.m_content);
        return *this;
    }

    template <typename ValueType>
    Any& operator=(ValueType const& rhs)
    {
        Any(rhs).Swap(*this);
        return *this;
    }

    template <typename ValueType,
              std::enable_if_t<!std::is_lvalue_reference_v<ValueType> && !std::is_const_v<ValueType>, bool> = true>
    Any& operator=(ValueType&& rhs)
    {
        Any(std::move(rhs)).Swap(*this);
        return *this;
    }

    Any& operator=(Any const& rhs)
    {
        Any(rhs).Swap(*this);
        return *this;
    }

    Any& operator=(Any&& rhs) noexcept
    {
        m_content = std::move(rhs.m_content);
        return *this;
    }

    /// True when the value has exactly the type of `val` and equals it.
    template <typename ValueType>
    bool operator==(ValueType const& val) const
    {
        return Type() == typeid(ValueType) &&
               any::detail::compare(cppmicroservices::ref_any_cast<ValueType>(*this), val);
    }

    /// True when both hold equal values of one type. An empty Any equals nothing, an empty one neither.
    bool operator==(Any const& rhs) const { return m_content && rhs.m_content && m_content->equals(rhs); }

    template <typename ValueType>
    bool operator!=(ValueType const& val) const
    {
        return !operator==(val);
    }

    bool Empty() const { return !m_content; }

    /// The value as text: strings as they are, `bool` as 1 or 0, lists as `[a,b]`, maps as `{k : v, l : w}`.
    ///
    /// @throws std::logic_error "empty any" when it, or a value inside of it, is empty.
    /// @throws std::length_error when values are nested so deeply that the stack would be at risk.
    std::string ToString() const;

    /// As ToString(), but "" when it is empty itself. (Values inside of it are not treated so.)
    std::string ToStringNoExcept() const;

    /// The value as JSON; an empty one is `null`. Numbers that JSON does not know are written as C++ streams do.
    ///
    /// @param increment  blanks that each level adds; 0 puts everything on one line
    /// @param indent     blanks in front of the first level
    /// @throws std::length_error as ToString().
    std::string ToJSON(uint8_t const increment, int32_t const indent) const;

    /// On one line, or indented by four blanks a level.
    std::string ToJSON(bool prettyPrint = false) const;

    /// The value as C++ source, laid out as by ToJSON; an empty one is `null`.
    std::string ToCPP(uint8_t const increment, int32_t const indent) const;
    std::string ToCPP(bool prettyPrint = false) const;

    /// The type of the value; `typeid(void)` when there is none.
    std::type_info const& Type() const { return m_content ? m_content->type() : typeid(void); }

private:
    enum class Form { text, json, cpp };

    class Placeholder {
    public:
        virtual ~Placeholder() = default;
        virtual void write(std::ostream& os, Form form, uint8_t increment, int32_t indent) const = 0;
        virtual std::type_info const& type() const = 0;
        virtual std::unique_ptr<Placeholder> clone() const = 0;
        virtual bool equals(Any const& other) const = 0;
    };

    template <typename ValueType>
    class Holder final : public Placeholder {
    public:
        explicit Holder(ValueType const& value) : held(value) {}
        explicit Holder(ValueType&& value) : held(std::move(value)) {}
        Holder& operator=(Holder const&) = delete;

        void write(std::ostream& os, Form form, uint8_t increment, int32_t indent) const override
        {
            switch (form) {
            case Form::text:
                any_value_to_string(os, held);
                break;
            case Form::json:
                any_value_to_json(os, held, increment, indent);
                break;
            case Form::cpp:
                any_value_to_cpp(os, held, increment, indent);
                break;
            }
        }

        std::type_info const& type() const override { return typeid(ValueType); }

        std::unique_ptr<Placeholder> clone() const override { return std::make_unique<Holder>(held); }

        bool equals(Any const& other) const override { return other == held; }

        ValueType held;
    };

    template <typename ValueType>
    friend ValueType* any_cast(Any*);
    template <typename ValueType>
    friend ValueType* unsafe_any_cast(Any*);

    std::string written(Form form, uint8_t increment, int32_t indent) const;

    std::unique_ptr<Placeholder> m_content;
};

/// An Any holds another type than the one asked for.
class US_Framework_EXPORT BadAnyCastException : public std::bad_cast {
public:
    BadAnyCastException(std::string msg = "");
    BadAnyCastException(BadAnyCastException const& other);
    BadAnyCastException& operator=(BadAnyCastException const& other);
    ~BadAnyCastException() override;

    char const* what() const noexcept override;

private:
    std::string m_message;
};

namespace detail {

[[noreturn]] US_Framework_EXPORT void
ThrowBadAnyCastException(std::string const& funcName, std::type_info const& source, std::type_info const& target);

} // namespace detail

/// The value, or null when `operand` is null or holds another type.
template <typename ValueType>
ValueType* any_cast(Any* operand)
{
    return operand && operand->Type() == typeid(ValueType)
               ? &static_cast<Any::Holder<ValueType>*>(operand->m_content.get())->held
               : nullptr;
}

template <typename ValueType>
ValueType const* any_cast(Any const* operand)
{
    return any_cast<ValueType>(const_cast<Any*>(operand));
}

/// A reference to the value.
///
/// @throws BadAnyCastException naming both types when `operand` holds another one.
template <typename ValueType>
ValueType const& ref_any_cast(Any const& operand)
{
    auto const* const result = any_cast<ValueType>(&operand);
    if (!result) {
        detail::ThrowBadAnyCastException("ref_any_cast", operand.Type(), typeid(ValueType));
    }
    return *result;
}

template <typename ValueType>
ValueType& ref_any_cast(Any& operand)
{
    auto* const result = any_cast<ValueType>(&operand);
    if (!result) {
        detail::ThrowBadAnyCastException("ref_any_cast", operand.Type(), typeid(ValueType));
    }
    return *result;
}

/// A copy of the value.
///
/// @throws BadAnyCastException naming both types when `operand` holds another one.
template <typename ValueType>
ValueType any_cast(Any const& operand)
{
    auto const* const result = any_cast<ValueType>(&operand);
    if (!result) {
        detail::ThrowBadAnyCastException("any_cast", operand.Type(), typeid(ValueType));
    }
    return *result;
}

template <typename ValueType>
ValueType any_cast(Any& operand)
{
    return any_cast<ValueType>(static_cast<Any const&>(operand));
}

/// The value; `operand` must hold a `ValueType`.
template <typename ValueType>
ValueType* unsafe_any_cast(Any* operand)
{
    return &static_cast<Any::Holder<ValueType>*>(operand->m_content.get())->held;
}

template <typename ValueType>
ValueType const* unsafe_any_cast(Any const* operand)
{
    return any_cast<ValueType>(operand);
}

} // namespace cppmicroservices

#include "cppmicroservices/detail/AnyMapText.h"
