#include "cppmicroservices/Any.h"

#include "value/TypeName.h"

#include <stdexcept>

namespace cppmicroservices {

namespace {

// Writing recurses, a few stack frames a level. The limit leaves room on a thread's usual stack of 8 MiB, even in
// builds whose frames are large; real manifests and properties stay far below it.
constexpr int deepestWritten = 1000;

class Depth {
public:
    Depth()
    {
        if (current == deepestWritten) {
            throw std::length_error("Any: the value is nested deeper than " + std::to_string(deepestWritten) +
                                    " levels and cannot be written");
        }
        ++current;
    }

    ~Depth() { --current; }

    Depth(Depth const&) = delete;
    Depth& operator=(Depth const&) = delete;

private:
    static thread_local int current;
};

thread_local int Depth::current = 0;

constexpr uint8_t prettyIncrement = 4;

} // namespace

Any::Any() = default;
Any::~Any() = default;

std::string Any::written(Form form, uint8_t increment, int32_t indent) const
{
    const Depth depth;
    // A stream of its own, so that the flags of the stream that the text goes to do not change it.
    std::ostringstream os;
    m_content->write(os, form, increment, indent);
    return os.str();
}

std::string Any::ToString() const
{
    if (Empty()) {
        throw std::logic_error("empty any");
    }
    if (auto const* const text = any_cast<std::string>(this)) {
        return *text;
    }
    return written(Form::text, 0, 0);
}

std::string Any::ToStringNoExcept() const
{
    return Empty() ? std::string{} : ToString();
}

std::string Any::ToJSON(uint8_t const increment, int32_t const indent) const
{
    return Empty() ? "null" : written(Form::json, increment, indent);
}

std::string Any::ToJSON(bool prettyPrint) const
{
    const uint8_t increment = prettyPrint ? prettyIncrement : 0;
    return ToJSON(increment, increment);
}

std::string Any::ToCPP(uint8_t const increment, int32_t const indent) const
{
    return Empty() ? "null" : written(Form::cpp, increment, indent);
}

std::string Any::ToCPP(bool prettyPrint) const
{
    const uint8_t increment = prettyPrint ? prettyIncrement : 0;
    return ToCPP(increment, increment);
}

BadAnyCastException::BadAnyCastException(std::string msg) : m_message(std::move(msg)) {}
BadAnyCastException::BadAnyCastException(BadAnyCastException const& other) = default;
BadAnyCastException& BadAnyCastException::operator=(BadAnyCastException const& other) = default;
// The key function: type information and virtual table live in the framework's library alone.
BadAnyCastException::~BadAnyCastException() = default;

char const* BadAnyCastException::what() const noexcept
{
    return m_message.empty()
               ? "cppmicroservices::BadAnyCastException: failed conversion using cppmicroservices::any_cast"
               : m_message.c_str();
}

namespace detail {

void ThrowBadAnyCastException(std::string const& funcName, std::type_info const& source, std::type_info const& target)
{
    throw BadAnyCastException("cppmicroservices::BadAnyCastException: " + funcName +
                              ": Failed to convert from cppmicroservices::Any type " + typeName(source) +
                              " to target type " + typeName(target));
}

} // namespace detail

} // namespace cppmicroservices
