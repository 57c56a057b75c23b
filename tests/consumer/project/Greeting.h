#pragma once

#include <string>

namespace consumer {

/// What the bundle offers to the host.
class Greeting {
public:
    virtual ~Greeting() = default;
    virtual std::string text() const = 0;
};

} // namespace consumer
