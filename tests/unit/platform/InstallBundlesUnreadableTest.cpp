#include "platform/InstallBundles.h"
#include "support/Host.h"
#include "unit/ZipText.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <unistd.h>
#include <utility>

using namespace ostrel::platform;
using namespace ostrel::test;

namespace fs = std::filesystem;

namespace {

/// Takes from root the right to read everything, while it lives; an ordinary user has no such right.
class WithoutPrivilege {
public:
    WithoutPrivilege() : m_user{::geteuid()}
    {
        constexpr uid_t nobody = 65534;
        if (m_user == 0) {
            change(nobody);
        }
    }
    WithoutPrivilege(const WithoutPrivilege&) = delete;
    WithoutPrivilege& operator=(const WithoutPrivilege&) = delete;
    ~WithoutPrivilege() // ends the program if it would have to go on as nobody
    {
        if (m_user == 0) {
            change(m_user);
        }
    }

private:
    static void change(uid_t user)
    {
        if (::seteuid(user) != 0) {
            throw std::system_error{errno, std::generic_category(), "seteuid"};
        }
    }

    uid_t m_user;
};

/// Gives a path other permissions, while it lives.
class Permissions {
public:
    Permissions(fs::path path, fs::perms permissions)
        : m_path{std::move(path)}, m_before{fs::status(m_path).permissions()}
    {
        fs::permissions(m_path, permissions);
    }
    Permissions(const Permissions&) = delete;
    Permissions& operator=(const Permissions&) = delete;
    ~Permissions() { fs::permissions(m_path, m_before); }

private:
    fs::path m_path;
    fs::perms m_before;
};

class InstallUnreadable : public HostFixture {
protected:
    InstallUnreadable()
    {
        // Others get in, so that what stops them is the path under test.
        fs::permissions(host.directory(), fs::perms{0755});
        fs::create_directory(closed);
        fs::permissions(closed, fs::perms{0755});
        host.write("closed/a.so", bundleZip("a"));
        fs::permissions(file, fs::perms{0644});
    }

    /// What the installation says while `unreadable` has these permissions, to a user without privileges.
    std::string textOf(const fs::path& path, const fs::path& unreadable, fs::perms permissions)
    {
        const Permissions change{unreadable, permissions};
        const WithoutPrivilege ordinary;
        EXPECT_TRUE(fs::exists(unreadable));
        try {
            installBundles(host.context(), Utf16Path{path.u16string()});
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "nothing was thrown";
    }

    static std::string refusalOf(const fs::path& path, const std::string& advice)
    {
        return "installBundles: '" + path.native() + "' cannot be read: Permission denied; check the " + advice +
               " and its permissions";
    }

    const fs::path closed = host.directory() / "closed";
    const fs::path file = closed / "a.so";
};

TEST_F(InstallUnreadable, GivenDirectoryThatMayNotBeRead_WhenInstalled_ThenTheTextNamesItAndTheReason)
{
    EXPECT_EQ(textOf(closed, closed, fs::perms::none), refusalOf(closed, "path"));
    EXPECT_FALSE(host.bundleIn("closed/a.so"));
}

TEST_F(InstallUnreadable, GivenDirectoryThatMayNotBeSearched_WhenInstalled_ThenTheTextNamesItsFileAndTheReason)
{
    EXPECT_EQ(textOf(closed, closed, fs::perms{0444}), refusalOf(file, "path"));
    EXPECT_FALSE(host.bundleIn("closed/a.so"));
}

TEST_F(InstallUnreadable, GivenFileThatMayNotBeRead_WhenItIsThePath_ThenTheTextNamesItAndTheReason)
{
    EXPECT_EQ(textOf(file, file, fs::perms::none), refusalOf(file, "file"));
    EXPECT_FALSE(host.bundleIn("closed/a.so"));
}

TEST_F(InstallUnreadable, GivenFileThatMayNotBeRead_WhenItsDirectoryIsInstalled_ThenTheTextNamesItAndTheReason)
{
    EXPECT_EQ(textOf(closed, file, fs::perms::none), refusalOf(file, "file"));
    EXPECT_FALSE(host.bundleIn("closed/a.so"));
}

TEST_F(InstallUnreadable, GivenPermissionsAgain_WhenInstalled_ThenTheBundleIs)
{
    EXPECT_EQ(textOf(closed, file, fs::perms::none), refusalOf(file, "file"));
    EXPECT_EQ(textOf(closed, file, fs::perms{0644}), "nothing was thrown");
    EXPECT_TRUE(host.bundleIn("closed/a.so"));
}

} // namespace
