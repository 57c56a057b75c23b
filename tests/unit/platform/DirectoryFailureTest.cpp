// What the system may answer for a directory, and hardly ever does.

#include "platform/InstallBundles.h"
#include "support/Host.h"
#include "support/NextDefinition.h"
#include "unit/ZipText.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <dirent.h>
#include <new>
#include <stdexcept>
#include <string>

using namespace ostrel::platform;
using namespace ostrel::test;
using testing::SizeIs;

namespace {

int opendirFailsWith = 0; ///< an error of the system; 0: it does not
int readdirFailsWith = 0;

} // namespace

extern "C" DIR* opendir(const char* name)
{
    if (opendirFailsWith != 0) {
        errno = opendirFailsWith;
        return nullptr;
    }
    return nextDefinition<DIR*(const char*)>("opendir")(name);
}

extern "C" dirent* readdir(DIR* stream)
{
    if (readdirFailsWith != 0) {
        errno = readdirFailsWith;
        return nullptr;
    }
    return nextDefinition<dirent*(DIR*)>("readdir")(stream);
}

namespace {

class DirectoryFailure : public HostFixture {
protected:
    DirectoryFailure() { host.write("a", bundleZip("a")); }
    ~DirectoryFailure() override { everythingWorks(); }

    static void everythingWorks()
    {
        opendirFailsWith = 0;
        readdirFailsWith = 0;
    }

    std::vector<cppmicroservices::Bundle> install() { return installBundles(host.context(), host.bundleDirectory()); }

    std::string textOfInstallation()
    {
        try {
            install();
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "nothing was thrown";
    }

    std::string refusal() const
    {
        return "installBundles: '" + host.directory().native() +
               "' cannot be read: Input/output error; check the path and its permissions";
    }
};

TEST_F(DirectoryFailure, GivenDirectoryThatCannotBeOpened_WhenInstalled_ThenTheTextNamesItAndTheReason)
{
    opendirFailsWith = EIO;
    EXPECT_EQ(textOfInstallation(), refusal());
}

TEST_F(DirectoryFailure, GivenDirectoryThatCannotBeReadToItsEnd_WhenInstalled_ThenTheTextNamesItAndTheReason)
{
    readdirFailsWith = EIO;
    EXPECT_EQ(textOfInstallation(), refusal());
}

TEST_F(DirectoryFailure, GivenDirectoryThatGoesMeanwhile_WhenInstalled_ThenTheTextSaysSo)
{
    opendirFailsWith = ENOENT;
    EXPECT_EQ(textOfInstallation(),
              "installBundles: '" + host.directory().native() + "' does not exist; check the path");
}

TEST_F(DirectoryFailure, GivenSystemWithoutMemory_WhenInstalled_ThenBadAllocPasses)
{
    opendirFailsWith = ENOMEM;
    EXPECT_THROW(install(), std::bad_alloc);

    everythingWorks();
    EXPECT_THAT(install(), SizeIs(1));
}

} // namespace
