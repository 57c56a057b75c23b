// Archives whose directory is in order, so that they can be installed, but whose data are not what it says.

#include "contract/resource/ResourceFixture.h"

#include <cppmicroservices/BundleResourceStream.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

using namespace cppmicroservices;
using ostrel::test::manifestOf;
using ostrel::test::Pack;

constexpr std::size_t sizeInDirectory = 24; // of an entry of the directory: where its unpacked size stands
constexpr std::size_t crcInDirectory = 16;
constexpr std::size_t nameInDirectory = 46;

class DamagedResources : public ostrel::test::ResourceFixture {
protected:
    /// The archive of a bundle "bad" with a file "x" of 2400 bytes.
    static std::string archive(Pack pack)
    {
        std::string data;
        while (data.size() < 2400) {
            data += "hello world ";
        }
        return ostrel::test::archiveOf({{"bad/", ""}, {"bad/manifest.json", manifestOf("bad")}, {"bad/x", data, pack}});
    }

    static void overwrite(std::string& bytes, std::size_t at, std::uint32_t number)
    {
        for (int i = 0; i < 4; ++i) {
            bytes[at + i] = static_cast<char>(number >> (8 * i));
        }
    }

    BundleResource installed(std::string const& bytes)
    {
        return context.InstallBundles(directory.write("bad.zip", bytes).string()).front().GetResource("x");
    }

    static void expectBad(BundleResource const& resource)
    {
        BundleResourceStream stream(resource, std::ios_base::binary);
        EXPECT_TRUE(stream.bad());
        EXPECT_EQ(std::char_traits<char>::eof(), stream.rdbuf()->sgetc());
    }

    static std::size_t directoryEntry(std::string const& bytes) { return bytes.rfind("bad/x") - nameInDirectory; }
};

TEST_F(DamagedResources, withAnotherChecksumAreBad)
{
    auto bytes = archive(Pack::stored);
    bytes[bytes.find("hello") + 4] = 'O';
    expectBad(installed(bytes));
}

TEST_F(DamagedResources, thatCannotBeUnpackedAreBad)
{
    auto bytes = archive(Pack::deflated);
    bytes.replace(bytes.find("bad/x") + 5, 12, 12, '\xff');
    expectBad(installed(bytes));
}

TEST_F(DamagedResources, largerThanSaidAreBad)
{
    auto bytes = archive(Pack::deflated);
    overwrite(bytes, directoryEntry(bytes) + sizeInDirectory, 10);
    expectBad(installed(bytes));
}

TEST_F(DamagedResources, smallerThanSaidAreBad)
{
    auto bytes = archive(Pack::deflated);
    overwrite(bytes, directoryEntry(bytes) + sizeInDirectory, 1U << 30U);
    expectBad(installed(bytes));
}

TEST_F(DamagedResources, thatClaimToExceedTheLimitAreBad)
{
    auto bytes = archive(Pack::deflated);
    overwrite(bytes, directoryEntry(bytes) + sizeInDirectory, 0xfffffff0U);
    auto const resource = installed(bytes);
    EXPECT_EQ(0x7fffffff, resource.GetSize());
    expectBad(resource);
}

TEST_F(DamagedResources, tellTheChecksumOfTheDirectory)
{
    auto bytes = archive(Pack::deflated);
    overwrite(bytes, directoryEntry(bytes) + crcInDirectory, 0x12345678U);
    auto const resource = installed(bytes);
    EXPECT_EQ(0x12345678U, resource.GetCrc32());
    expectBad(resource);
}

} // namespace
