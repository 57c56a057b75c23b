#include "watch/SafeLine.h"

#include <climits>
#include <gtest/gtest.h>

#include <string>

namespace ostrel::host {

namespace {

std::string written(SafeLine& line)
{
    testing::internal::CaptureStderr();
    line.write();
    return testing::internal::GetCapturedStderr();
}

} // namespace

TEST(SafeLine, GivenTextsAndNumbers_ThenEachStandsWhereItWasPut)
{
    SafeLine line;
    (line << "a ").number(12) << " b ";
    line.number(-3) << " c ";
    line.address(0xabc) << " d ";
    line.number(0);

    EXPECT_EQ(written(line), "a 12 b -3 c 0xabc d 0");
}

TEST(SafeLine, GivenExtremeNumbers_ThenAllTheirDigitsAreThere)
{
    SafeLine line;
    line.number(LONG_MIN) << " ";
    line.number(LONG_MAX) << " ";
    line.address(UINTPTR_MAX);

    EXPECT_EQ(written(line), std::to_string(LONG_MIN) + ' ' + std::to_string(LONG_MAX) + " 0x" + std::string(16, 'f'));
}

TEST(SafeLine, GivenMoreThanItTakes_ThenTheRestIsLeftOut)
{
    SafeLine line;
    for (int i = 0; i < 100; ++i) {
        line << "x";
    }
    EXPECT_EQ(written(line), std::string(32, 'x'));

    SafeLine numbers;
    for (int i = 0; i < 20; ++i) {
        numbers.number(LONG_MAX);
    }
    EXPECT_EQ(written(numbers).size() % std::to_string(LONG_MAX).size(), 0U) << "none is cut";
    EXPECT_NE(written(numbers), "");
}

} // namespace ostrel::host
