#include "bundle_reader/BundleFile.h"
#include "support/TemporaryDirectory.h"
#include "unit/ZipText.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <random>

using namespace ostrel::bundle_reader;
using namespace ostrel::test;
using testing::IsEmpty;
using testing::Not;

namespace {

std::string library()
{
    return contentOf(UNIT_PLAIN_LIBRARY);
}

void expectDamaged(const std::string& bytes)
{
    const Contents contents = inspect(bytes);
    EXPECT_EQ(contents.archive, Archive::damaged);
    EXPECT_THAT(contents.damage, Not(IsEmpty()));
    EXPECT_THAT(contents.folders, IsEmpty());
}

TEST(Damage, GivenZipCutAnywhere_WhenRead_ThenItIsDamaged)
{
    const std::string zip = bundleZip("n");
    for (std::size_t size = 4; size < zip.size(); ++size) {
        SCOPED_TRACE(size);
        expectDamaged(zip.substr(0, size));
    }
}

TEST(Damage, GivenAppendedZipCutShort_WhenRead_ThenItIsDamaged)
{
    const std::string zip = bundleZip("n");
    for (std::size_t size = 60; size < zip.size(); ++size) {
        SCOPED_TRACE(size);
        expectDamaged(library() + zip.substr(0, size));
    }
}

TEST(Damage, GivenManifestChanged_WhenRead_ThenTheCheckSumTells)
{
    std::string zip = zipText({{"n/manifest.json", "unmistakable"}});
    zip[zip.find("unmistakable")] = 'X';

    expectDamaged(zip);
}

TEST(Damage, GivenDirectoryMarkBroken_WhenRead_ThenItIsDamaged)
{
    std::string zip = bundleZip("n");
    zip[zip.find("PK\x01\x02")] = 'X';

    expectDamaged(zip);
    expectDamaged(library() + zip);
}

TEST(Damage, GivenEntryMarkBroken_WhenRead_ThenItIsDamaged)
{
    std::string zip = bundleZip("n");
    zip[0] = 'X';

    expectDamaged(zip);
    expectDamaged(library() + zip);
}

TEST(Damage, GivenZipInsideOfLibraryWithoutEndRecord_WhenRead_ThenItIsDamaged)
{
    std::string zip = bundleZip("n");
    zip[zip.rfind("PK\x05\x06")] = 'X';
    std::string bytes = library();
    bytes.replace(bytes.find("room!\x01\x02"), zip.size(), zip);

    expectDamaged(bytes);
}

TEST(Damage, GivenOuterZipCutOffBehindInnerOne_WhenRead_ThenTheInnerDoesNotCount)
{
    const std::string inner = bundleZip("inner");
    const std::string outer = zipText({{"n/inner.zip", inner}, {"n/manifest.json", "{}"}});
    const std::string cut = outer.substr(0, outer.find(inner) + inner.size());

    expectDamaged(cut);
    expectDamaged(library() + cut);
}

TEST(Damage, GivenRestOfAnArchiveBeforeOthers_WhenTheseAreNotTooMany_ThenItIsDamaged)
{
    const std::string rest = bundleZip("n").substr(0, 40);
    const auto archives = [](int count) {
        std::string row;
        for (int i = 0; i < count; ++i) {
            row += bundleZip("a");
        }
        return row;
    };

    expectDamaged(rest + archives(1));
    expectDamaged(rest + archives(64));
    EXPECT_EQ(inspect(rest + archives(65)).archive, Archive::readable); // nobody appends so many
}

TEST(Damage, GivenManifestLargerThanTheDirectorySays_WhenItIsAboveTheLimit_ThenThatIsTold)
{
    const std::string content(manifestLimit + 1, ' ');
    std::string zip = zipInMemory([&content](zip_t* archive) {
        zip_file_add(archive, "n/manifest.json", zip_source_buffer(archive, content.data(), content.size(), 0), 0);
    });
    // The size of the data, in the directory and before them.
    zip.replace(zip.find("PK\x01\x02") + 24, 4, std::string("\x02\0\0\0", 4));
    zip.replace(22, 4, std::string("\x02\0\0\0", 4));

    const Contents contents = inspect(zip);

    EXPECT_EQ(contents.archive, Archive::damaged);
    EXPECT_THAT(contents.damage, testing::HasSubstr("larger than a manifest may be, 16 MiB"));
}

TEST(Damage, GivenAnyByteChanged_WhenRead_ThenNothingWorseHappens)
{
    // Every single changed byte and many random ones: the result is any, as long as there is one.
    const std::string whole = library() + bundleZip("n");
    std::mt19937 random{1};
    std::size_t readable = 0;
    for (int round = 0; round < 2000; ++round) {
        std::string bytes = whole;
        for (int change = 0; change < 1 + round % 8; ++change) {
            const bool inHeader = random() % 2 == 0;
            const std::size_t range = inHeader ? 1024 : bytes.size();
            bytes[random() % range] = static_cast<char>(random());
        }
        const Contents contents = inspect(bytes);
        EXPECT_EQ(contents.damage.empty(), !contents.truncated && contents.archive != Archive::damaged);
        readable += contents.archive == Archive::readable ? 1U : 0U;
    }
    EXPECT_GT(readable, 0U);
    EXPECT_LT(readable, 2000U);
}

} // namespace
