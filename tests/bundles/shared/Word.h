#pragma once

#include <string>

namespace ostrel::test {

/// A service as simple as can be: it says the symbolic name of its bundle.
class Word {
public:
    virtual ~Word() = default;
    virtual std::string text() const = 0;
};

} // namespace ostrel::test
