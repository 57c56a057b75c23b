#include "contract/resource/ResourceFixture.h"

#include <cppmicroservices/BundleResourceStream.h>

#include <gmock/gmock.h>

#include <istream>
#include <iterator>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using namespace cppmicroservices;
using ostrel::test::manifestOf;
using ostrel::test::Pack;

static_assert(std::is_base_of_v<std::istream, BundleResourceStream>);
static_assert(!std::is_copy_constructible_v<BundleResourceStream>);

class ResourceStreams : public ostrel::test::ResourceFixture {
protected:
    static std::string read(BundleResource const& resource, std::ios_base::openmode mode)
    {
        BundleResourceStream stream(resource, mode);
        EXPECT_TRUE(stream.good());
        std::string const data{std::istreambuf_iterator<char>(stream), {}};
        EXPECT_EQ(std::char_traits<char>::eof(), stream.get());
        EXPECT_TRUE(stream.eof());
        EXPECT_FALSE(stream.bad());
        return data;
    }

    static std::string binary(BundleResource const& resource)
    {
        return read(resource, std::ios_base::in | std::ios_base::binary);
    }

    static std::string text(BundleResource const& resource) { return read(resource, std::ios_base::in); }
};

TEST_F(ResourceStreams, readFilesOfBothKinds)
{
    EXPECT_EQ("Z", binary(alpha.GetResource("Zebra.txt"))) << "stored";
    EXPECT_EQ(std::string(1000, 'x'), binary(alpha.GetResource("noext"))) << "deflated";
    EXPECT_EQ("of beta", binary(beta.GetResource("zeta.txt")));
    EXPECT_EQ("a", binary(alpha.GetResource("/DIR/A.txt")));
}

TEST_F(ResourceStreams, areEmptyWithoutData)
{
    for (auto const* path : {"empty.dat", "/", "/dir/", "/none"}) {
        EXPECT_EQ("", binary(alpha.GetResource(path))) << path;
        EXPECT_EQ("", text(alpha.GetResource(path))) << path;
    }
    EXPECT_EQ("", text(BundleResource()));
}

TEST_F(ResourceStreams, leaveOutANewlineAtTheEndOfText)
{
    auto const lines = install("lines.zip", {{"lines/", ""},
                                             {"lines/manifest.json", manifestOf("lines")},
                                             {"lines/one", "\n"},
                                             {"lines/three", "\n\n\n"},
                                             {"lines/crlf", "a\r\nb\rc\r\n"},
                                             {"lines/controls", std::string("a\x1a\0b", 4), Pack::stored}});
    struct Data {
        std::string path, binary, text;
    };
    for (auto const& data :
         {Data{"one", "\n", ""}, Data{"three", "\n\n\n", "\n\n"}, Data{"crlf", "a\r\nb\rc\r\n", "a\r\nb\rc\r"},
          Data{"controls", std::string("a\x1a\0b", 4), std::string("a\x1a\0b", 4)}}) {
        EXPECT_EQ(data.binary, binary(lines.GetResource(data.path))) << data.path;
        EXPECT_EQ(data.binary, read(lines.GetResource(data.path), std::ios_base::binary)) << data.path;
        EXPECT_EQ(data.text, text(lines.GetResource(data.path))) << data.path;
        EXPECT_EQ(data.text, read(lines.GetResource(data.path), std::ios_base::out)) << data.path;
        EXPECT_EQ(data.text, read(lines.GetResource(data.path), std::ios_base::in | std::ios_base::ate)) << data.path;
    }
    BundleResourceStream stream(lines.GetResource("crlf"));
    std::vector<std::string> found;
    for (std::string line; std::getline(stream, line);) {
        found.push_back(line);
    }
    EXPECT_THAT(found, ::testing::ElementsAre("a\r", "b\rc\r"));
}

TEST_F(ResourceStreams, seek)
{
    BundleResourceStream stream(alpha.GetResource("archive.tar.gz"));
    EXPECT_EQ(0, stream.tellg());
    EXPECT_EQ(10, stream.rdbuf()->in_avail());
    stream.seekg(0, std::ios_base::end);
    EXPECT_EQ(10, stream.tellg());
    EXPECT_EQ(0, stream.rdbuf()->in_avail());
    EXPECT_EQ(std::char_traits<char>::eof(), stream.peek());
    stream.clear();
    stream.seekg(3);
    EXPECT_EQ('d', stream.get());
    EXPECT_EQ(4, stream.tellg());
    stream.seekg(-2, std::ios_base::cur);
    EXPECT_EQ('c', stream.get());
    stream.seekg(-1, std::ios_base::end);
    EXPECT_EQ('j', stream.get());
    stream.seekg(0);
    char part[100] = {};
    stream.read(part, sizeof part);
    EXPECT_EQ(10, stream.gcount());
    EXPECT_TRUE(stream.eof());
    EXPECT_TRUE(stream.fail());
}

TEST_F(ResourceStreams, takeBackWhatWasRead)
{
    BundleResourceStream stream(alpha.GetResource("archive.tar.gz"));
    stream.get();
    stream.get();
    stream.unget();
    EXPECT_EQ('b', stream.get());
    stream.putback('b');
    EXPECT_EQ('b', stream.get());
    stream.putback('Q');
    EXPECT_TRUE(stream.fail());
    stream.clear();
    stream.seekg(0, std::ios_base::end);
    stream.unget();
    EXPECT_EQ('j', stream.get());
    stream.seekg(0);
    stream.unget();
    EXPECT_TRUE(stream.fail());
}

TEST_F(ResourceStreams, readALargeFile)
{
    std::string data;
    for (unsigned seed = 1; data.size() < 5'000'000; seed = seed * 1664525U + 1013904223U) {
        data += static_cast<char>(seed >> 24U);
    }
    auto const large = install(
        "large.zip",
        {{"large/manifest.json", manifestOf("large")}, {"large/packed", data}, {"large/stored", data, Pack::stored}});
    EXPECT_TRUE(data == binary(large.GetResource("packed")));
    EXPECT_TRUE(data == binary(large.GetResource("stored")));
    EXPECT_EQ(5'000'000, large.GetResource("packed").GetSize());
}

TEST_F(ResourceStreams, outliveBundleFrameworkAndFile)
{
    auto const held = alpha.GetResource("noext");
    std::filesystem::remove(alpha.GetLocation());
    alpha.Uninstall();
    ostrel::test::stopAndWait(framework);
    EXPECT_EQ(std::string(1000, 'x'), binary(held));
}

} // namespace
