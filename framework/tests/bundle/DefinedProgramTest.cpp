// A program that is a bundle, where the other framework asks for more of its archive.
#include "support/MemoryZip.h"
#include "support/TemporaryDirectory.h"
#include "unit/ZipText.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <string>

namespace {

using ostrel::test::contentOf;
using ostrel::test::TemporaryDirectory;
using ostrel::test::ZipEntries;
using ostrel::test::zipText;

std::string outputOf(std::filesystem::path const& program)
{
    std::string output;
    FILE* const pipe = popen(('\'' + program.string() + '\'').c_str(), "re");
    if (pipe == nullptr) {
        return "not started";
    }
    std::array<char, 256> part{};
    while (std::fgets(part.data(), static_cast<int>(part.size()), pipe) != nullptr) {
        output += part.data();
    }
    pclose(pipe);
    return output;
}

/// What the probe says with an archive of these entries behind it.
std::string bundlesWith(ZipEntries const& entries)
{
    TemporaryDirectory const directory;
    auto const program = directory.write("program", contentOf(PROGRAM_PROBE) + zipText(entries));
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    return outputOf(program);
}

TEST(DefinedProgram, needsNoEntriesForFolders)
{
    auto const manifest = ostrel::test::manifestText("own");
    EXPECT_EQ("1 own\n0 system_bundle\n", bundlesWith({{"own/manifest.json", manifest}}));
    EXPECT_EQ("1 own\n0 system_bundle\n", bundlesWith({{"own/", ""}, {"own/manifest.json", manifest}}));
}

TEST(DefinedProgram, isNoBundleWithoutAManifest)
{
    EXPECT_EQ("0 system_bundle\n", bundlesWith({{"own/text.txt", "text"}}));
    EXPECT_EQ("0 system_bundle\n", outputOf(PROGRAM_PROBE));
}

} // namespace
