#include "contract/ThrownText.h"
#include "contract/resource/ResourceFixture.h"

#include <cppmicroservices/BundleResourceStream.h>

#include <gmock/gmock.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace cppmicroservices;
using ostrel::test::archiveOf;
using ostrel::test::manifestOf;
using ostrel::test::thrownText;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class DefinedResources : public ostrel::test::ResourceFixture {
protected:
    static std::string read(BundleResource const& resource)
    {
        BundleResourceStream stream(resource, std::ios_base::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
};

TEST_F(DefinedResources, ofNamesThatDifferInCaseAreFoundByTheirOwn)
{
    auto const cased = install("cased.zip", {{"cased/", ""},
                                             {"cased/manifest.json", manifestOf("cased")},
                                             {"cased/Same.txt", "upper"},
                                             {"cased/same.txt", "lower"}});
    EXPECT_EQ("upper", read(cased.GetResource("Same.txt")));
    EXPECT_EQ("lower", read(cased.GetResource("same.txt")));
}

TEST_F(DefinedResources, ofBundlesWhoseNamesDifferInCaseAreKeptApart)
{
    auto const upper = install("names.zip", {{"NAME/", ""},
                                             {"NAME/manifest.json", manifestOf("NAME")},
                                             {"NAME/upper.txt", "u"},
                                             {"name/", ""},
                                             {"name/manifest.json", manifestOf("name")},
                                             {"name/lower.txt", "l"}});
    auto const lower = context.GetBundles(upper.GetLocation()).back();
    EXPECT_THAT(upper.GetResource("/").GetChildren(), ElementsAre("manifest.json", "upper.txt"));
    EXPECT_THAT(lower.GetResource("/").GetChildren(), ElementsAre("lower.txt", "manifest.json"));
    EXPECT_FALSE(upper.GetResource("lower.txt"));
}

TEST_F(DefinedResources, thatAreFilesHaveNoChildren)
{
    for (auto const& resource : alpha.FindResources("/", "", true)) {
        if (resource.IsFile()) {
            EXPECT_THAT(resource.GetChildren(), IsEmpty()) << resource;
            EXPECT_THAT(resource.GetChildResources(), IsEmpty()) << resource;
        }
    }
}

TEST_F(DefinedResources, haveAHashWhenInvalid)
{
    std::hash<BundleResource> const hash;
    EXPECT_EQ(hash(BundleResource()), hash(alpha.GetResource("none")));
}

TEST_F(DefinedResources, areNotSoughtOutsideOfTheirData)
{
    BundleResourceStream stream(alpha.GetResource("archive.tar.gz"));
    stream.seekg(4);
    for (auto const& [offset, way] : {std::pair{11, std::ios_base::beg}, std::pair{-1, std::ios_base::beg},
                                      std::pair{1, std::ios_base::end}, std::pair{-5, std::ios_base::cur}}) {
        stream.seekg(offset, way);
        EXPECT_TRUE(stream.fail()) << offset;
        stream.clear();
        EXPECT_EQ(4, stream.tellg()) << offset;
    }
    EXPECT_EQ('e', stream.get());
}

TEST_F(DefinedResources, areThereThoughTheFileHadNothingElseThanManifestsAndIsGone)
{
    auto const plain = install("plain.zip", {{"plain/", ""}, {"plain/manifest.json", manifestOf("plain")}});
    std::filesystem::remove(plain.GetLocation());
    EXPECT_EQ(manifestOf("plain"), read(plain.GetResource("manifest.json")));
    EXPECT_EQ(1U, plain.FindResources("/", "", true).size());
}

TEST_F(DefinedResources, ofASmallArchiveStayThoughItsFileIsWrittenTo)
{
    auto const held = alpha.GetResource("zeta.txt");
    directory.write("both.zip", std::string(5000, 'x'));
    EXPECT_EQ("zeta\n", read(held));
    EXPECT_EQ("zeta\n", read(alpha.GetResource("zeta.txt")));
}

TEST_F(DefinedResources, ofALargeArchiveAreBadStreamsOnceItsFileIsWrittenTo)
{
    auto const large = install("large.zip", {{"large/", ""},
                                             {"large/manifest.json", manifestOf("large")},
                                             {"large/data", std::string(100000, 'x'), ostrel::test::Pack::stored}});
    auto const held = large.GetResource("data");
    directory.write("large.zip", std::string(5000, 'x'));
    EXPECT_TRUE(BundleResourceStream(held).bad());
    EXPECT_EQ(100000, held.GetSize()) << "what is known of it stays";
}

TEST_F(DefinedResources, areFoundWhenTheCurrentFolderChanges)
{
    auto const before = std::filesystem::current_path();
    std::filesystem::current_path(directory.path());
    directory.write("here.zip", archiveOf({{"here/", ""}, {"here/manifest.json", manifestOf("here")}}));
    auto const here = context.InstallBundles("here.zip").front();
    std::filesystem::current_path(before);
    EXPECT_TRUE(here.GetResource("manifest.json"));
}

TEST_F(DefinedResources, mayNestDeeply)
{
    std::vector<ostrel::test::PackedEntry> entries{{"deep/", ""}, {"deep/manifest.json", manifestOf("deep")}};
    std::string chain = "deep/";
    for (int level = 0; level < 2000; ++level) {
        chain += "e/";
        entries.push_back({chain, ""});
    }
    entries.push_back({chain + "f", "end"});
    auto const deep = install("deep.zip", entries);
    auto const found = deep.FindResources("/e", "f", true);
    ASSERT_EQ(1U, found.size());
    EXPECT_EQ("end", read(found.front()));
}

TEST_F(DefinedResources, areReadByManyThreads)
{
    std::atomic<int> right{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([this, &right] {
            for (int round = 0; round < 50; ++round) {
                right += read(alpha.GetResource("noext")) == std::string(1000, 'x') ? 1 : 0;
                right += read(beta.FindResources("/", "zeta", false).front()) == "of beta" ? 1 : 0;
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(400, right);
}

} // namespace
