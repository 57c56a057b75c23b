#pragma once

#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

namespace contract {

/// How the compiler calls the type, in full.
std::string nameOf(std::type_info const& type);

/// What a sequence of calls did, a line each, in a form that is the same in each run and on each framework that behaves
/// the same. A line holds printable characters only.
class Trace {
public:
    explicit Trace(std::ostream& os) : m_os(os) {}

    void line(std::string const& text);

    /// As line(); but consecutive lines of one group, which is not empty, have no order and are written sorted.
    void unordered(std::string const& group, std::string const& text);

    /// The group of the line before, if it had one.
    std::string const& group() const { return m_group; }

    /// From now on `shown` is written for `text`, wherever it stands in a line: for paths.
    void hide(std::string const& text, std::string const& shown);

    /// Nothing more is written.
    void end()
    {
        flush();
        m_ended = true;
    }

    /// Makes the call, and writes `what` and what came of it: its result, or the type and text of what it threw.
    ///
    /// Lines that are written meanwhile, as by callbacks, come before and are indented.
    template <class Call>
    void call(std::string const& what, Call&& make)
    {
        ++m_depth;
        std::string result;
        try {
            if constexpr (std::is_void_v<std::invoke_result_t<Call>>) {
                make();
                result = what;
            } else {
                result = what + " = " + std::string(make());
            }
        } catch (...) {
            result = what + " ! " + current();
        }
        --m_depth;
        line(result);
    }

    /// The exception that is being handled: type, and text if it has one.
    static std::string current();

    /// A name for an object that is known by its address only: `prefix` and a number in order of first appearance.
    std::string name(std::string const& prefix, void const* address);

private:
    void flush();

    std::ostream& m_os;
    std::string m_group;
    std::vector<std::string> m_lines;
    std::size_t m_depth = 0;
    bool m_ended = false;
    std::vector<std::pair<std::string, std::string>> m_hidden;
    std::map<std::pair<std::string, void const*>, std::size_t> m_names;
    std::map<std::string, std::size_t> m_named;
};

} // namespace contract
