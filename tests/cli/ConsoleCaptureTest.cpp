#include "frame/ConsoleCapture.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace ostrel::test {

namespace {

/// Sees what gets to where std::cout wrote before.
class ConsoleCapture : public testing::Test {
protected:
    void SetUp() override { m_console = std::cout.rdbuf(others.rdbuf()); }
    void TearDown() override { std::cout.rdbuf(m_console); }

    std::ostringstream others;

private:
    std::streambuf* m_console = nullptr;
};

} // namespace

TEST_F(ConsoleCapture, GivenOtherThreadThatPrints_ThenItIsHandedOn)
{
    const std::string text = host::printed([] {
        std::cout << "mine, " << 1 << std::endl;
        std::thread{[] { std::cout << "other" << '!' << std::endl; }}.join();
        std::cout << "mine again\n";
    });

    EXPECT_EQ(text, "mine, 1\nmine again\n");
    EXPECT_EQ(others.str(), "other!\n");
}

TEST_F(ConsoleCapture, GivenStreamInABadState_ThenNothingIsLost)
{
    std::cout.setstate(std::ios_base::badbit);

    EXPECT_EQ(host::printed([] { std::cout << "text"; }), "text");
}

TEST_F(ConsoleCapture, GivenPrintingThatThrows_ThenTheNextOneBeginsAnew)
{
    EXPECT_THROW(host::printed([] {
                     std::cout << "half";
                     throw std::runtime_error{"planned"};
                 }),
                 std::runtime_error);

    std::cout << "between";

    EXPECT_EQ(host::printed([] { std::cout << "whole"; }), "whole");
    EXPECT_EQ(others.str(), "between");
}

} // namespace ostrel::test
