#include "contract/traces/RandomValue.h"
#include "contract/traces/Subjects.h"

#include <array>
#include <list>
#include <map>
#include <set>

namespace contract {

using namespace cppmicroservices;

namespace {

class Values {
public:
    Values(Choices& choices, Trace& trace) : m_choices(choices), m_trace(trace) {}

    void step();

private:
    std::size_t slot() { return m_choices.below(m_slots.size()); }
    static std::string named(std::size_t slot) { return "v" + std::to_string(slot); }

    void assign(std::size_t at);
    void write(std::size_t at);
    void compare(std::size_t at);
    void castOne(std::size_t at);

    template <class T>
    void cast(std::size_t at);
    template <class... T>
    void castTo(std::size_t type, std::size_t at);

    Choices& m_choices;
    Trace& m_trace;
    std::array<Any, 5> m_slots;
};

void Values::assign(std::size_t at)
{
    auto const other = slot();
    switch (m_choices.below(7)) {
    case 0:
        m_slots[at] = m_slots[other];
        m_trace.line(named(at) + " = " + named(other));
        break;
    case 1:
        if (at != other) {
            m_slots[at] = std::move(m_slots[other]);
            m_trace.line(named(at) + " = move " + named(other) +
                         (m_slots[other].Empty() ? ", empty" : ", full")); // NOLINT
        }
        break;
    case 2:
        m_slots[at].Swap(m_slots[other]);
        m_trace.line(named(at) + " swap " + named(other));
        break;
    default:
        m_slots[at] = randomValue(m_choices);
        break;
    }
    m_trace.line(named(at) + " is " + described(m_slots[at]));
}

void Values::write(std::size_t at)
{
    auto const& value = m_slots[at];
    auto const name = named(at);
    // Once a control character has been written, 3.8.4 indents with zeros.
    bool const control = value.ToJSON().find("\\u00") != std::string::npos;
    switch (m_choices.below(control ? 2 : 6)) {
    case 0:
        m_trace.call(name + ".ToString()", [&] { return value.ToString(); });
        break;
    case 1:
        m_trace.call(name + ".ToStringNoExcept()", [&] { return value.ToStringNoExcept(); });
        break;
    case 2: {
        bool const pretty = m_choices.chance(50);
        m_trace.call(name + ".ToJSON(" + (pretty ? "true)" : ")"), [&] { return value.ToJSON(pretty); });
        break;
    }
    case 3: {
        bool const pretty = m_choices.chance(50);
        m_trace.call(name + ".ToCPP(" + (pretty ? "true)" : ")"), [&] { return value.ToCPP(pretty); });
        break;
    }
    default: {
        auto const increment = static_cast<std::uint8_t>(m_choices.below(4));
        auto const indent = static_cast<std::int32_t>(m_choices.below(5));
        auto const numbers = "(" + std::to_string(increment) + ", " + std::to_string(indent) + ")";
        if (m_choices.chance(50)) {
            m_trace.call(name + ".ToJSON" + numbers, [&] { return value.ToJSON(increment, indent); });
        } else {
            m_trace.call(name + ".ToCPP" + numbers, [&] { return value.ToCPP(increment, indent); });
        }
    }
    }
}

void Values::compare(std::size_t at)
{
    auto const other = slot();
    if (holdsEmpty(m_slots[at]) || holdsEmpty(m_slots[other])) {
        return;
    }
    m_trace.line(named(at) + " == " + named(other) + ": " + std::to_string(m_slots[at] == m_slots[other]) +
                 std::to_string(m_slots[at] != m_slots[other]) + std::to_string(m_slots[at] == 5) +
                 std::to_string(m_slots[at] == std::string("a")) + std::to_string(m_slots[at] != true) +
                 std::to_string(m_slots[at] == Any(m_slots[at])));
}

template <class T>
void Values::cast(std::size_t at)
{
    auto& value = m_slots[at];
    auto const& constant = m_slots[at];
    auto const called = "<" + nameOf(typeid(T)) + ">(" + named(at) + ")";
    auto const found = [](bool yes) { return yes ? "found" : "null"; };
    switch (m_choices.below(6)) {
    case 0:
        m_trace.call("any_cast" + called, [&] { return described(any_cast<T>(value)); });
        break;
    case 1:
        m_trace.call("const any_cast" + called, [&] { return described(any_cast<T>(constant)); });
        break;
    case 2:
        m_trace.call("ref_any_cast" + called, [&] { return described(ref_any_cast<T>(value)); });
        break;
    case 3:
        m_trace.call("const ref_any_cast" + called, [&] { return described(ref_any_cast<T>(constant)); });
        break;
    case 4:
        m_trace.line("any_cast pointer" + called + " " + found(any_cast<T>(&value)));
        break;
    default:
        m_trace.line("any_cast const pointer" + called + " " + found(any_cast<T>(&constant)));
        break;
    }
}

template <class... T>
void Values::castTo(std::size_t type, std::size_t at)
{
    std::size_t number = 0;
    ((number++ == type % sizeof...(T) ? cast<T>(at) : void()), ...);
}

void Values::castOne(std::size_t at)
{
    auto const type = m_choices.below(64);
    castTo<int, long, std::string, bool, double, char, std::vector<std::string>, std::vector<Any>, AnyMap, short, float,
           std::map<std::string, Any>, char const*, unsigned char, std::list<Any>, Point, Shade, std::set<std::string>,
           unsigned long, Any, std::vector<bool>>(type, at);
}

void Values::step()
{
    auto const at = slot();
    switch (m_choices.below(10)) {
    case 0:
    case 1:
    case 2:
        assign(at);
        break;
    case 3:
    case 4:
        compare(at);
        break;
    case 5:
    case 6:
        castOne(at);
        break;
    default:
        write(at);
        break;
    }
}

} // namespace

void traceValues(Choices& choices, Trace& trace, std::size_t steps)
{
    Values values(choices, trace);
    for (; steps > 0; --steps) {
        values.step();
    }
}

} // namespace contract
