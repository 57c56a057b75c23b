#include "FrameworkHost.h"

#include "InstallFailure.h"
#include "Problem.h"

#include <cppmicroservices/Any.h>
#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/Constants.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <chrono>
#include <dlfcn.h>
#include <platform/InstallBundles.h>
#include <utility>

namespace ostrel::host {

namespace {

using cppmicroservices::Any;
using cppmicroservices::Bundle;
using cppmicroservices::Framework;

Framework newFramework()
{
    // With RTLD_NOW a bundle that lacks a symbol fails to start, instead of ending the process at some later call.
    return cppmicroservices::FrameworkFactory().NewFramework(cppmicroservices::FrameworkConfiguration{
        {cppmicroservices::Constants::LIBRARY_LOAD_OPTIONS, Any{static_cast<int>(RTLD_NOW)}}});
}

std::vector<Problem::Text> withoutComponentName(const std::vector<Bundle>& bundles)
{
    std::vector<Problem::Text> found;
    for (const Bundle& bundle : bundles) {
        if (bundle.GetHeaders().AtCompoundKey("zq.component.name", Any{}).Empty()) {
            found.push_back({"the bundle " + bundle.GetSymbolicName() + " has no component name",
                             bundle.GetLocation(),
                             {"its manifest has no \"zq\": {\"component\": {\"name\": ...}}"},
                             "add the component name to the manifest and build the bundle again",
                             inspection::Code::noComponentName});
        }
    }
    return found;
}

} // namespace

RunningFramework::RunningFramework() : m_framework(newFramework())
{
    try {
        m_framework.Start();
    } catch (const std::exception& error) {
        throw Problem{ExitStatus::framework,
                      {"the plug-in framework does not start",
                       "",
                       {error.what()},
                       "check that the installed framework is complete"}};
    }
}

RunningFramework::~RunningFramework()
{
    try {
        stop();
    } catch (const std::exception&) {
        // On the way out of an error that says more. Without one, stop() was called before.
    }
}

void RunningFramework::stop()
{
    using cppmicroservices::FrameworkEvent;
    std::string why;
    try {
        m_framework.Stop();
        const FrameworkEvent event = m_framework.WaitForStop(std::chrono::milliseconds::zero());
        if (event.GetType() == FrameworkEvent::FRAMEWORK_STOPPED) {
            return;
        }
        why = event.GetMessage();
    } catch (const std::exception& error) {
        why = error.what();
    }
    throw Problem{ExitStatus::framework,
                  {"the plug-in framework did not stop",
                   "",
                   {why.empty() ? "it gave no reason" : why},
                   "check what the bundles do when they stop"}};
}

FrameworkHost FrameworkHost::installing(const ostrel::platform::Utf16Path& directory, const std::string& shownAs)
{
    return FrameworkHost{directory, shownAs};
}

FrameworkHost::FrameworkHost(const ostrel::platform::Utf16Path& directory, std::string shownAs)
    : m_directory(std::move(shownAs))
{
    try {
        m_bundles = ostrel::platform::installBundles(context(), directory);
    } catch (const std::exception& error) {
        auto failures = filesThatFail(context(), m_directory);
        if (failures.empty()) {
            failures.push_back({"the bundles cannot be installed",
                                m_directory,
                                {error.what()},
                                "build the bundle again, or take the file out of the directory"});
        }
        throw Problem{ExitStatus::bundle, std::move(failures)};
    }
    auto unnamed = withoutComponentName(m_bundles);
    if (!unnamed.empty()) {
        throw Problem{ExitStatus::bundle, std::move(unnamed)};
    }
}

std::string FrameworkHost::culprit(const std::string& message) const
{
    std::string found;
    std::size_t foundAt = 0;
    for (const Bundle& bundle : m_bundles) {
        const std::string location = bundle.GetLocation();
        const std::size_t at = message.rfind(location);
        // A location may be the beginning of another one.
        if (at != std::string::npos && (at > foundAt || (at == foundAt && location.size() > found.size()))) {
            found = location;
            foundAt = at;
        }
    }
    return found.empty() ? m_directory : found;
}

} // namespace ostrel::host
