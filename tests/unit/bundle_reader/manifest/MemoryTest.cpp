// What happens when memory fails.
#include "bundle_reader/manifest/CheckedAllocator.h"
#include "bundle_reader/manifest/Json.h"
#include "bundle_reader/manifest/JsonWriter.h"
#include "bundle_reader/manifest/ManifestRules.h"
#include "bundle_reader/manifest/Version.h"
#include "support/FailingMemory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <malloc.h>
#include <string>

namespace {

using namespace ostrel::bundle_reader;
using ostrel::test::failEachAllocation;
using ostrel::test::FailingMemory;
using ostrel::test::RunOfMemory;

/// With one allocation that fails, and with all that follow: each run that was hit must end with std::bad_alloc.
template <typename Work>
void expectBadAlloc(Work work, std::size_t atLeast)
{
    const auto check = [](const RunOfMemory& run) { EXPECT_EQ(run.hasFailed, run.outOfMemory); };
    EXPECT_GE(failEachAllocation(work, check), atLeast);
    EXPECT_GE(failEachAllocation(work, check, FailingMemory::Fails::fromThenOn), atLeast);
}

/// What is too large for the heap is mapped, and counted so.
TEST(Memory, GivenBlock_WhenItIsMadeEmpty_ThenItIsGivenBack)
{
    CheckedAllocator allocator;
    constexpr std::size_t size = std::size_t{64} << 20U;
    const std::size_t before = mallinfo2().hblkhd;
    void* const block = allocator.Malloc(size);
    ASSERT_GE(mallinfo2().hblkhd, before + size);

    EXPECT_EQ(allocator.Realloc(block, size, 0), nullptr);

    EXPECT_EQ(mallinfo2().hblkhd, before);
}

std::string longText()
{
    return std::string(2000, 'x');
}

/// Each kind of value, texts that no small buffer holds, and nesting that makes stacks grow.
std::string manifest()
{
    std::string text = R"({"bundle.symbolic_name": ")" + longText() + R"(", "list": [1, 2147483648, null, true)";
    for (int i = 0; i < 100; ++i) {
        text += ", [\"" + longText().substr(0, 20) + "\"]";
    }
    text += R"(], "numbers": [1.5, 18446744073709551615, -0.0, 123456789.123456789e10], "deep": )";
    text += std::string(100, '[') + std::string(100, ']');
    return text + R"(, ")" + longText() + R"(": {"bundle.version": "%1.2.3.qualifier-that-no-small-buffer-holds"},)" +
           R"("bundle.version": "1.2.3.qualifier-that-no-small-buffer-holds", "bundle.activator": true})";
}

class Memory : public testing::TestWithParam<JsonDialect> {};

TEST_P(Memory, GivenItFails_WhenManifestIsRead_ThenItIsBadAlloc)
{
    const std::string text = manifest();
    expectBadAlloc([&] { EXPECT_FALSE(readJson(text, GetParam()).fault); }, 100);
}

TEST_P(Memory, GivenItFails_WhenFaultIsTold_ThenItIsBadAlloc)
{
    const std::string key = "{\"" + longText() + "\":";
    for (const std::string& text :
         {key + "x", key + "[[1, 21474836481e308", key + std::string(300, '['), key + "\"\\q\"", std::string{"[1]"}}) {
        expectBadAlloc([&] { EXPECT_TRUE(readJson(text, GetParam()).fault); }, 1);
    }
}

INSTANTIATE_TEST_SUITE_P(Dialects, Memory,
                         testing::Values(JsonDialect::strict, JsonDialect::commented, JsonDialect::lenient));

TEST(Memory, GivenItFails_WhenRulesAreAsked_ThenItIsBadAlloc)
{
    const Json json = readJson(manifest());
    ASSERT_FALSE(json.fault);
    expectBadAlloc(
        [&] {
            EXPECT_TRUE(asksForActivator(json.root));
            const VersionReading reading = readVersion(versionText(json.root).value());
            EXPECT_EQ(toText(reading.version).size(), 5u + 1 + reading.version.qualifier.size());
        },
        2);
    const std::string bad = "1.2.3." + longText() + "!";
    expectBadAlloc([&] { EXPECT_FALSE(readVersion(bad).fault.empty()); }, 1);
}

TEST(Memory, GivenItFails_WhenManifestIsWritten_ThenItIsBadAlloc)
{
    const Json json = readJson(manifest(), JsonDialect::lenient);
    ASSERT_FALSE(json.fault);
    expectBadAlloc([&] { EXPECT_GT(writeJson(json.root).size(), 6000u); }, 5);
    expectBadAlloc([&] { EXPECT_EQ(writeJson(json.root.members.front().key).size(), 22u); }, 1);
}

} // namespace
