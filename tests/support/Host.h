#pragma once

#include "platform/Utf16Path.h"
#include "support/TemporaryDirectory.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace ostrel::test {

/// A real framework, started with load options RTLD_NOW, and a bundle directory that begins empty.
///
/// Bundles are copied, not linked, into the directory: each host then has libraries of its own, with fresh statics, and
/// a bundle's location is the path of its file in the directory.
class Host {
public:
    Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    /// Stops the framework and waits for it.
    ~Host();

    /// The system bundle's context.
    cppmicroservices::BundleContext context() const { return m_context; }

    const std::filesystem::path& directory() const { return m_directory.path(); }
    ostrel::platform::Utf16Path bundleDirectory() const;

    /// Copies a built bundle of tests/bundles into the directory, under its own file name.
    /// @return the file name
    std::string add(const std::string& target);
    /// The same under another file name.
    std::string add(const std::string& target, const std::string& fileName);
    /// Writes a file with exactly this content into the directory.
    std::string write(const std::string& fileName, const std::string& content);

    /// The location under which the framework knows a file of the directory.
    std::string locationOf(const std::string& fileName) const;
    /// The one bundle at that location; an invalid handle if there is none or more than one.
    cppmicroservices::Bundle bundleIn(const std::string& fileName) const;

    /// Stops the framework and waits for it; does nothing the second time.
    void stop();

private:
    TemporaryDirectory m_directory;
    cppmicroservices::Framework m_framework;
    cppmicroservices::BundleContext m_context;
    bool m_running = true;
};

/// A test with a host.
class HostFixture : public ::testing::Test {
protected:
    Host host;
};

} // namespace ostrel::test
