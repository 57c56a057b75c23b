#include "contract/resource/ResourceFixture.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using ostrel::test::pathsOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FindingResources : public ostrel::test::ResourceFixture {
protected:
    std::vector<std::string> find(std::string const& path, std::string const& pattern, bool recurse = false) const
    {
        return pathsOf(alpha.FindResources(path, pattern, recurse));
    }
};

TEST_F(FindingResources, listsAFolder)
{
    for (auto const* path : {"dir", "/dir", "dir/", "/dir/"}) {
        EXPECT_THAT(find(path, ""), ElementsAre("/dir/a.TXT", "/dir/b.txt", "/dir/sub/")) << path;
    }
    EXPECT_THAT(find("/", "*t*"), ElementsAre("/Zebra.txt", "/archive.tar.gz", "/empty.dat", "/manifest.json", "/noext",
                                              "/trail.", "/zeta.txt"));
    EXPECT_EQ(find("/", "*"), find("", ""));
    EXPECT_EQ(find("/", "*"), find("/", "**"));
}

TEST_F(FindingResources, listsAFolderAfterWhatIsInIt)
{
    EXPECT_THAT(find("/", "", true), ElementsAre("/.hidden", "/Zebra.txt", "/archive.tar.gz", "/dir/a.TXT",
                                                 "/dir/b.txt", "/dir/sub/f.txt", "/dir/sub/", "/dir/", "/empty.dat",
                                                 "/manifest.json", "/noext", "/trail.", "/void/", "/zeta.txt"));
    EXPECT_THAT(find("dir", "*.txt", true), ElementsAre("/dir/b.txt", "/dir/sub/f.txt"));
}

TEST_F(FindingResources, looksForTheTextsBetweenTheStarsInTheirOrder)
{
    EXPECT_THAT(find("/", "zeta.txt"), ElementsAre("/zeta.txt"));
    EXPECT_THAT(find("/", "eta"), ElementsAre("/zeta.txt"));
    EXPECT_THAT(find("/", "z*t"), ElementsAre("/zeta.txt"));
    EXPECT_THAT(find("/", "a*t"),
                ElementsAre("/Zebra.txt", "/archive.tar.gz", "/empty.dat", "/manifest.json", "/zeta.txt"))
        << "not bound to the ends";
    EXPECT_THAT(find("/", "tar*gz"), ElementsAre("/archive.tar.gz"));
    EXPECT_THAT(find("/", "gz*tar"), IsEmpty());
    EXPECT_THAT(find("/", "*txt*txt"), IsEmpty()) << "each has to be there";
    EXPECT_THAT(find("/", "zet*ta"), IsEmpty()) << "they may not overlap";
    EXPECT_THAT(find("/", "?eta.txt"), IsEmpty());
    EXPECT_THAT(find("/", "ZETA*"), IsEmpty()) << "in their case";
}

TEST_F(FindingResources, matchesNamesAndNotPaths)
{
    EXPECT_THAT(find("/", "/zeta.txt"), IsEmpty());
    EXPECT_THAT(find("/", "dir/b", true), IsEmpty());
    EXPECT_THAT(find("/", "*/", true), ElementsAre("/dir/sub/", "/dir/", "/void/"));
    EXPECT_THAT(find("/", "dir"), ElementsAre("/dir/"));
    EXPECT_THAT(find("/", "sub/", true), ElementsAre("/dir/sub/"));
}

TEST_F(FindingResources, findsNothingElsewhere)
{
    for (auto const* path : {"none", "/none/", "//", "/./", "zeta.txt", "/zeta.txt", "/dir//", "/DIR", " ", "void",
                             "implicit", "/implicit/", "implicit/deep", "/dir/../"}) {
        EXPECT_THAT(find(path, "", true), IsEmpty()) << path;
    }
}

TEST_F(FindingResources, needsAnEntryOfTheFolder)
{
    auto const bare = install("bare.zip", {{"bare/manifest.json", ostrel::test::manifestOf("bare")},
                                           {"bare/top.txt", "t"},
                                           {"bare/dir/", ""},
                                           {"bare/dir/x.txt", "x"}});
    EXPECT_THAT(pathsOf(bare.FindResources("/", "", true)), IsEmpty());
    EXPECT_THAT(pathsOf(bare.FindResources("/dir", "", true)), ElementsAre("/dir/x.txt"));
    EXPECT_FALSE(bare.GetResource("/"));
    EXPECT_TRUE(bare.GetResource("top.txt"));
}

} // namespace
