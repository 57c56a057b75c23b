// What an installation costs does not grow with what a file holds besides its headers and its archive.
#include "platform/InstallBundles.h"
#include "process/RunningFramework.h"
#include "support/Host.h"
#include "support/LargeLibrary.h"
#include "unit/ZipText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string>
#include <sys/resource.h>

namespace {

using namespace ostrel::platform;
using namespace ostrel::test;

constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20U;

/// The bytes that this process has read so far, from files and whatever else.
std::uint64_t bytesRead()
{
    std::ifstream counters{"/proc/self/io"};
    std::string name;
    std::uint64_t number = 0;
    while (counters >> name >> number) {
        if (name == "rchar:") {
            return number;
        }
    }
    throw std::runtime_error{"/proc/self/io does not tell the bytes read"};
}

std::uint64_t mostMemory()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
}

class LargeFile : public HostFixture {
protected:
    /// A library of 400 MiB for the framework of this process, with an archive behind it.
    std::string make()
    {
        const bool embedded = ostrel::process::runningFramework() == ostrel::bundle_reader::Framework::embedded;
        const auto file = host.directory() / "large.so";
        writeLargeLibrary(file, contentOf(embedded ? UNIT_OF_EMBEDDED : UNIT_OF_INSTALLED), 400 * mebibyte);
        std::ofstream{file, std::ios::app | std::ios::binary} << bundleZip("large");
        return file.string();
    }

    template <class Install>
    void expectLittleOf(Install install)
    {
        const std::uint64_t read = bytesRead();
        const std::uint64_t memory = mostMemory();
        install();
        EXPECT_TRUE(host.bundleIn("large.so"));
        EXPECT_LE(bytesRead() - read, mebibyte);
        EXPECT_LE(mostMemory() - memory, 16 * mebibyte);
    }
};

TEST_F(LargeFile, GivenBundleOf400MiB_WhenInstalledByTheFramework_ThenLittleIsRead)
{
    const std::string file = make();
    expectLittleOf([&] { host.context().InstallBundles(file); });
}

TEST_F(LargeFile, GivenBundleOf400MiB_WhenItsDirectoryIsInstalled_ThenLittleIsRead)
{
    make();
    expectLittleOf([&] { installBundles(host.context(), host.bundleDirectory()); });
}

} // namespace
