#pragma once

#include <gtest/gtest.h>

#include <string>

namespace ostrel::test {

/// The text of the `Exception` that `action` throws; a failed test when it throws none.
template <class Exception, class Action>
std::string thrownText(Action&& action)
{
    try {
        action();
    } catch (const Exception& e) {
        return e.what();
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

} // namespace ostrel::test
