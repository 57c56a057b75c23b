#pragma once

#include "bundles/shared/ActivatorHooks.h"

#include <memory>
#include <ostream>
#include <string>
#include <utility>

namespace ostrel::test {

/// A property value that tells of what is done with it: "copy NAME", "print NAME" and "end NAME".
class WildValue {
public:
    WildValue(std::string name, std::shared_ptr<ActivatorHooks> hooks)
        : m_name(std::move(name)), m_hooks(std::move(hooks))
    {
    }
    WildValue(const WildValue& other) : m_name(other.m_name), m_hooks(other.m_hooks) { tell("copy"); }
    WildValue& operator=(const WildValue&) = delete;
    ~WildValue() { tell("end"); }

    friend std::ostream& operator<<(std::ostream& stream, const WildValue& value)
    {
        value.tell("print");
        return stream << value.m_name;
    }

private:
    void tell(const std::string& step) const
    {
        if (m_hooks) {
            m_hooks->happened(step + " " + m_name, {});
        }
    }

    std::string m_name;
    std::shared_ptr<ActivatorHooks> m_hooks;
};

} // namespace ostrel::test
