#include <gtest/gtest.h>

#include <inspection/Code.h>
#include <set>

namespace {

using namespace ostrel::inspection;

TEST(Code, GivenAllCodes_WhenWritten_ThenEachHasATextOfItsOwn)
{
    std::set<std::string_view> texts;
    for (const Code code : allCodes()) {
        texts.insert(toText(code));
    }

    EXPECT_EQ(texts.size(), allCodes().size());
    EXPECT_EQ(toText(Code::notABundle), "not-a-bundle");
    EXPECT_EQ(toText(Code::exits), "exits");
}

} // namespace
