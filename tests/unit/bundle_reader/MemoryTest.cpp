// Memory that fails, at each allocation once: what is told is that, and never damage.
#include "bundle_reader/BundleFile.h"
#include "support/FailingMemory.h"
#include "support/TemporaryDirectory.h"
#include "unit/ZipText.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

using namespace ostrel::bundle_reader;
using namespace ostrel::test;

namespace {

class Memory : public ::testing::TestWithParam<bool> {
protected:
    Memory()
    {
        const std::string pad(GetParam() ? smallArchive : 10, 'p');
        const std::string zip = zipInMemory([&pad](zip_t* archive) {
            zip_file_add(archive, "n/manifest.json", zip_source_buffer(archive, "{}", 2, 0), 0);
            const auto index = zip_file_add(archive, "n/pad", zip_source_buffer(archive, pad.data(), pad.size(), 0), 0);
            zip_set_file_compression(archive, static_cast<zip_uint64_t>(index),
                                     pad.size() > 10 ? ZIP_CM_STORE : ZIP_CM_DEFLATE, 0);
        });
        path = directory.write("file", contentOf(UNIT_PLAIN_LIBRARY) + zip).string();
    }

    static std::size_t openFiles()
    {
        const std::filesystem::directory_iterator all{"/proc/self/fd"};
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }

    TemporaryDirectory directory;
    std::string path;
};

TEST_P(Memory, GivenAllocationThatFails_WhenFileIsRead_ThenThatIsTold)
{
    const std::size_t before = openFiles();
    std::optional<Contents> contents;
    const std::size_t allocations = failEachAllocation(
        [&] {
            contents.reset();
            contents = read(path);
        },
        [&](const RunOfMemory& run) {
            EXPECT_EQ(before, openFiles());
            if (!run.outOfMemory) {
                ASSERT_TRUE(contents);
                EXPECT_EQ("", contents->damage);
                EXPECT_EQ(1U, contents->folders.size());
            }
        });
    EXPECT_GT(allocations, 10U);
}

TEST_P(Memory, GivenAllocationThatFails_WhenEntryIsRead_ThenThatIsToldAndTheNextReadingSucceeds)
{
    const Contents contents = read(path);
    std::string data;
    const auto readPad = [&] {
        data.clear();
        const ArchiveReader reader{openArchive(path, contents.place)};
        data = reader.read(1);
    };
    const std::size_t allocations = failEachAllocation(readPad, [&](const RunOfMemory& run) {
        EXPECT_EQ(run.outOfMemory, data.empty());
        readPad();
        EXPECT_EQ('p', data.back());
    });
    EXPECT_GT(allocations, 10U);
}

INSTANTIATE_TEST_SUITE_P(Small, Memory, ::testing::Values(false));
INSTANTIATE_TEST_SUITE_P(Large, Memory, ::testing::Values(true));

} // namespace
