#include "contract/ThrownText.h"

#include <cppmicroservices/AnyMap.h>

#include <gtest/gtest.h>

using namespace cppmicroservices;
using ostrel::test::thrownText;

namespace {

struct Incomparable {
    int number = 0;
};

std::ostream& operator<<(std::ostream& os, const Incomparable& value)
{
    return os << value.number;
}

} // namespace

TEST(AnyType, GivenALong_WhenCastToInt_ThenOnlyItsExactTypeIsFound)
{
    Any any(5L);

    EXPECT_EQ(any_cast<int>(&any), nullptr);
    ASSERT_NE(any_cast<long>(&any), nullptr);
    EXPECT_EQ(*any_cast<long>(&any), 5L);
    EXPECT_EQ(any.Type(), typeid(long));
    EXPECT_EQ(any_cast<long>(static_cast<Any*>(nullptr)), nullptr);
}

TEST(AnyType, GivenAnEmptyOne_WhenAsked_ThenItIsVoid)
{
    EXPECT_TRUE(Any().Empty());
    EXPECT_EQ(Any().Type(), typeid(void));
}

TEST(AnyCast, GivenAnotherType_WhenCast_ThenTheTextNamesBothTypes)
{
    const std::string prefix = "cppmicroservices::BadAnyCastException: ";
    const std::string string = "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >";

    EXPECT_EQ(thrownText<std::bad_cast>([] { any_cast<long>(Any(5)); }),
              prefix + "any_cast: Failed to convert from cppmicroservices::Any type int to target type long");
    EXPECT_EQ(thrownText<BadAnyCastException>([] { any_cast<std::string>(Any()); }),
              prefix + "any_cast: Failed to convert from cppmicroservices::Any type void to target type " + string);
    EXPECT_EQ(thrownText<BadAnyCastException>([] { ref_any_cast<std::string>(Any(AnyMap())); }),
              prefix +
                  "ref_any_cast: Failed to convert from cppmicroservices::Any type cppmicroservices::AnyMap to "
                  "target type " +
                  string);
    EXPECT_EQ(thrownText<BadAnyCastException>([] { throw BadAnyCastException(); }),
              prefix + "failed conversion using cppmicroservices::any_cast");
}

TEST(AnyCast, GivenAnyTypeToTrust_WhenCastUnchecked_ThenTheValueIsFound)
{
    Any value = 5;
    Any const& fixed = value;
    *unsafe_any_cast<int>(&value) = 6;

    EXPECT_EQ(*unsafe_any_cast<int>(&fixed), 6);
    EXPECT_EQ(unsafe_any_cast<long>(&fixed), nullptr);
}

TEST(AnyEquality, GivenValues_WhenCompared_ThenTypeAndValueCount)
{
    EXPECT_TRUE(Any(5) == 5);
    EXPECT_FALSE(Any(5) == 5L);
    EXPECT_TRUE(Any(5) == Any(5));
    EXPECT_FALSE(Any(5) == Any(5L));
    EXPECT_TRUE(Any(5) != 6);
    EXPECT_FALSE(Any() == Any(5));
    EXPECT_FALSE(Any() == 5);
    EXPECT_FALSE(Any(Incomparable{1}) == Any(Incomparable{1}));
}

TEST(AnyMove, GivenAValue_WhenMovedOrSwapped_ThenTheSourceIsEmpty)
{
    Any from(std::string("x"));
    Any to(std::move(from));

    EXPECT_TRUE(from.Empty()); // NOLINT: what a moved-from Any is, is the point
    EXPECT_EQ(to.ToString(), "x");
    to.Swap(from);
    EXPECT_TRUE(to.Empty());
    EXPECT_EQ(from.ToString(), "x");
}

TEST(AnyCopy, GivenACopy_WhenTheCopyChanges_ThenTheOriginalStays)
{
    Any original(std::vector<Any>{1});
    Any copy = original;
    ref_any_cast<std::vector<Any>>(copy).emplace_back(2);

    EXPECT_EQ(original.ToString(), "[1]");
    EXPECT_EQ(copy.ToString(), "[1,2]");
}
