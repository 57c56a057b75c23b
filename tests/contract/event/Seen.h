#pragma once

#include <cppmicroservices/BundleEvent.h>
#include <cppmicroservices/Constants.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/ServiceEvent.h>

#include <sstream>
#include <string>
#include <vector>

namespace contract {

template <class Value>
std::string textOf(Value const& value)
{
    std::ostringstream text;
    text << value;
    return text.str();
}

/// Types of events in the order of their delivery. A listener that refers to one must go before it: tests stop their
/// framework themselves, as that of a fixture sends events when it stops.
class Seen {
public:
    template <class Event>
    void operator()(Event const& event)
    {
        m_types.push_back(textOf(event.GetType()));
    }

    /// Separated by blanks.
    std::string types() const
    {
        std::string result;
        for (auto const& type : m_types) {
            result += (result.empty() ? "" : " ") + type;
        }
        return result;
    }

    std::string typesAndClear()
    {
        auto result = types();
        m_types.clear();
        return result;
    }

private:
    std::vector<std::string> m_types;
};

} // namespace contract
