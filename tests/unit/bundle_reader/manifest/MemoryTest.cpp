// What happens when memory fails. All of the program's memory passes through here, so this is a program of its own.
#include "bundle_reader/manifest/Json.h"
#include "bundle_reader/manifest/JsonWriter.h"
#include "bundle_reader/manifest/ManifestRules.h"
#include "bundle_reader/manifest/Version.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <limits>
#include <new>
#include <string>

// What the C library's functions are called under another name. What `new` gives comes from malloc() too.
extern "C" {
void* __libc_malloc(std::size_t size);                // NOLINT(bugprone-reserved-identifier)
void* __libc_calloc(std::size_t n, std::size_t size); // NOLINT(bugprone-reserved-identifier)
void* __libc_realloc(void* block, std::size_t size);  // NOLINT(bugprone-reserved-identifier)
}

namespace {

constexpr long never = std::numeric_limits<long>::max();

// How many requests are still granted, and how many are refused after those.
thread_local long granted = never;
thread_local long refused = 0;

bool isRefused()
{
    if (granted == never || granted-- > 0) {
        return false;
    }
    errno = ENOMEM;
    return refused-- > 0;
}

} // namespace

extern "C" {

void* malloc(std::size_t size)
{
    return isRefused() ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t n, std::size_t size)
{
    return isRefused() ? nullptr : __libc_calloc(n, size);
}

void* realloc(void* block, std::size_t size)
{
    return isRefused() ? nullptr : __libc_realloc(block, size);
}
}

namespace {

using namespace ostrel::bundle_reader;

/// Runs the work with its first request for memory refused, then with its second, and so on until there is none to
/// refuse any more. Each run but the last must end with std::bad_alloc.
///
/// @param atOnce  how many requests are refused in a row
/// @return how many runs failed
template <typename Work>
long failuresOf(Work work, long atOnce)
{
    for (long number = 0;; ++number) {
        bool failed = false;
        granted = number;
        refused = atOnce;
        try {
            work();
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        const bool wasRefused = refused < atOnce;
        granted = never;
        EXPECT_EQ(failed, wasRefused) << "request " << number;
        if (!wasRefused) {
            return number;
        }
    }
}

/// With one request refused, and with all that follow.
template <typename Work>
void expectBadAlloc(Work work, long atLeast)
{
    EXPECT_GE(failuresOf(work, 1), atLeast);
    EXPECT_GE(failuresOf(work, never), atLeast);
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
