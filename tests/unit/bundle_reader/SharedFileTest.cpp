// Many files of which few are open at once.
#include "bundle_reader/file/SharedFile.h"

#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <atomic>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace ostrel::bundle_reader;

class SharedFiles : public ::testing::Test {
protected:
    using File = std::unique_ptr<const SharedFile>;

    std::string pathOf(std::size_t number) const { return (directory.path() / std::to_string(number)).string(); }

    File file(std::size_t number) const
    {
        directory.write(std::to_string(number), "content " + std::to_string(number));
        return std::make_unique<const SharedFile>(pathOf(number), stampOf(pathOf(number)));
    }

    std::vector<File> files(std::size_t count, std::size_t from = 0) const
    {
        std::vector<File> made;
        for (std::size_t number = from; number < from + count; ++number) {
            made.push_back(file(number));
        }
        return made;
    }

    /// How many descriptors of this process lead into the directory.
    std::size_t openedHere() const
    {
        std::size_t count = 0;
        for (const auto& entry : std::filesystem::directory_iterator{"/proc/self/fd"}) {
            std::error_code gone;
            const auto target = std::filesystem::read_symlink(entry.path(), gone).string();
            count += target.rfind(directory.path().string(), 0) == 0 ? 1U : 0U;
        }
        return count;
    }

    static std::string failure(const SharedFile& file)
    {
        try {
            return "read: " + file.text(0, 100);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
    }

    const std::string changed = "the file was removed, replaced or changed since it was first read";
    ostrel::test::TemporaryDirectory directory;
};

TEST_F(SharedFiles, GivenManyFiles_WhenAllAreRead_ThenFewAreOpen)
{
    const auto all = files(3 * sharedFileLimit);
    EXPECT_EQ(sharedFileLimit, openedHere());
    for (int round = 0; round < 2; ++round) {
        for (std::size_t number = 0; number < all.size(); ++number) {
            EXPECT_EQ("content " + std::to_string(number), all[number]->text(0, 100));
        }
    }
    EXPECT_EQ(sharedFileLimit, openedHere());
    EXPECT_EQ(9U, all[0]->size());
}

TEST_F(SharedFiles, GivenFilesThatGo_WhenNoneIsLeft_ThenNoneIsOpen)
{
    auto all = files(sharedFileLimit + 3);
    all.clear();
    EXPECT_EQ(0U, openedHere());
}

TEST_F(SharedFiles, GivenMoreThanTheLimit_WhenOneIsOpened_ThenTheOneUsedLongestAgoIsClosed)
{
    const auto all = files(sharedFileLimit);
    EXPECT_EQ("content 0", failure(*all[0]).substr(6)) << "used, so 1 is the one used longest ago";
    const auto one = files(1, 100);
    for (const std::size_t number : {0, 1, 2}) {
        std::filesystem::remove(pathOf(number));
    }
    EXPECT_EQ("read: content 0", failure(*all[0]));
    EXPECT_EQ(changed, failure(*all[1]));
    EXPECT_EQ("read: content 2", failure(*all[2]));
}

TEST_F(SharedFiles, GivenClosedFile_WhenItWasReplacedByTheSameBytes_ThenItIsRefused)
{
    const auto first = file(0);
    const auto others = files(sharedFileLimit, 1);
    std::filesystem::rename(directory.write("new", "content 0"), pathOf(0));
    EXPECT_EQ(changed, failure(*first));
    EXPECT_EQ(changed, failure(*first)) << "and stays so";
    EXPECT_EQ(sharedFileLimit, openedHere());
}

TEST_F(SharedFiles, GivenFileThatIsWrittenTo_WhenRead_ThenItIsRefusedThoughItIsOpen)
{
    const auto first = file(0);
    directory.write("0", "other content");
    EXPECT_EQ(changed, failure(*first));
}

TEST_F(SharedFiles, GivenAnotherStamp_WhenOpened_ThenItIsRefused)
{
    file(0);
    EXPECT_THROW(SharedFile(pathOf(0), FileStamp{}), std::runtime_error);
    EXPECT_EQ(0U, openedHere());
}

TEST_F(SharedFiles, GivenManyThreads_WhenTheyReadTheSameAndOthers_ThenEachGetsItsBytes)
{
    const auto all = files(2 * sharedFileLimit);
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&all, &wrong, thread] {
            for (std::size_t step = 0; step < 300; ++step) {
                const std::size_t number = (step * 7 + static_cast<std::size_t>(thread)) % all.size();
                wrong += all[number]->text(0, 100) == "content " + std::to_string(number) ? 0 : 1;
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(0, wrong);
    EXPECT_LE(openedHere(), sharedFileLimit);
}

} // namespace
