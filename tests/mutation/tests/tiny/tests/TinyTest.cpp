#include "Tiny.h"

#include <gtest/gtest.h>

TEST(Tiny, keepsTheLimit)
{
    EXPECT_EQ(3, limited(3));
    EXPECT_EQ(10, limited(11));
}

TEST(Tiny, knowsOddNumbers)
{
    EXPECT_TRUE(isOdd(3));
    EXPECT_FALSE(isOdd(4));
}

TEST(Tiny, signs)
{
    EXPECT_EQ("+", sign(5));
}

TEST(Tiny, halves)
{
    EXPECT_EQ(2, half(4));
    EXPECT_EQ(0, half(3));
}
