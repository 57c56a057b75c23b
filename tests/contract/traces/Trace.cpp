#include "contract/traces/Trace.h"

#include <algorithm>
#include <cstdlib>
#include <cxxabi.h>
#include <exception>
#include <memory>

namespace contract {

namespace {

std::string printable(std::string const& text)
{
    static char const* const digits = "0123456789abcdef";
    std::string result;
    for (char const c : text) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte == '\n') {
            result += "\\n";
        } else if (byte < 0x20 || byte >= 0x7f) {
            result += "\\x";
            result += digits[byte / 16];
            result += digits[byte % 16];
        } else {
            result += c;
        }
    }
    return result;
}

} // namespace

std::string nameOf(std::type_info const& type)
{
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> const name(abi::__cxa_demangle(type.name(), nullptr, nullptr, &status),
                                                           &std::free);
    return status == 0 ? name.get() : type.name();
}

void Trace::line(std::string const& text)
{
    unordered({}, text);
}

void Trace::unordered(std::string const& group, std::string const& text)
{
    if (m_ended) {
        return;
    }
    std::string shown = text;
    for (auto const& [hidden, instead] : m_hidden) {
        for (auto at = shown.find(hidden); at != std::string::npos; at = shown.find(hidden, at + instead.size())) {
            shown.replace(at, hidden.size(), instead);
        }
    }
    if (group.empty() || group != m_group) {
        flush();
        m_group = group;
    }
    m_lines.push_back(std::string(2 * m_depth, ' ') + printable(shown));
}

void Trace::flush()
{
    std::sort(m_lines.begin(), m_lines.end());
    for (auto const& each : m_lines) {
        m_os << each << '\n';
    }
    m_lines.clear();
}

void Trace::hide(std::string const& text, std::string const& shown)
{
    m_hidden.emplace_back(text, shown);
}

std::string Trace::current()
{
    try {
        throw;
    } catch (std::exception const& e) {
        return nameOf(typeid(e)) + ": " + e.what();
    } catch (...) {
        auto const* const type = abi::__cxa_current_exception_type();
        return type ? nameOf(*type) : "unknown";
    }
}

std::string Trace::name(std::string const& prefix, void const* address)
{
    if (!address) {
        return "null";
    }
    auto const [position, added] = m_names.emplace(std::make_pair(prefix, address), 0);
    if (added) {
        position->second = ++m_named[prefix];
    }
    return prefix + std::to_string(position->second);
}

} // namespace contract
