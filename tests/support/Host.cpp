#include "support/Host.h"

#include "support/TestBundles.h"

#include <cppmicroservices/Constants.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <chrono>
#include <dlfcn.h>
#include <vector>

namespace ostrel::test {

namespace {

cppmicroservices::Framework startedFramework()
{
    cppmicroservices::FrameworkConfiguration configuration;
    // An undefined symbol is then an exception at the start and never the end of the process.
    configuration[cppmicroservices::Constants::LIBRARY_LOAD_OPTIONS] = static_cast<int>(RTLD_NOW);
    cppmicroservices::Framework framework = cppmicroservices::FrameworkFactory{}.NewFramework(configuration);
    framework.Start();
    return framework;
}

} // namespace

Host::Host() : m_framework(startedFramework()), m_context(m_framework.GetBundleContext()) {}

Host::~Host()
{
    stop();
}

ostrel::platform::Utf16Path Host::bundleDirectory() const
{
    return ostrel::platform::Utf16Path{m_directory.path().u16string()};
}

std::string Host::add(const std::string& target)
{
    return add(target, testBundle(target).filename().string());
}

std::string Host::add(const std::string& target, const std::string& fileName)
{
    std::filesystem::copy_file(testBundle(target), directory() / fileName);
    return fileName;
}

std::string Host::write(const std::string& fileName, const std::string& content)
{
    m_directory.write(fileName, content);
    return fileName;
}

std::string Host::locationOf(const std::string& fileName) const
{
    return (directory() / fileName).string();
}

cppmicroservices::Bundle Host::bundleIn(const std::string& fileName) const
{
    const std::vector<cppmicroservices::Bundle> bundles = m_context.GetBundles(locationOf(fileName));
    return bundles.size() == 1 ? bundles.front() : cppmicroservices::Bundle{};
}

void Host::stop()
{
    if (m_running) {
        m_running = false;
        m_framework.Stop();
        m_framework.WaitForStop(std::chrono::milliseconds::zero());
    }
}

} // namespace ostrel::test
