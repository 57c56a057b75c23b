#include "FrameworkHost.h"

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

void checkComponentName(const Bundle& bundle)
{
    if (bundle.GetHeaders().AtCompoundKey("zq.component.name", Any{}).Empty()) {
        throw Problem{ExitStatus::bundle,
                      {"cannot use the bundle " + quoted(bundle.GetSymbolicName()), bundle.GetLocation(),
                       "its manifest has no \"zq\": {\"component\": {\"name\": ...}}",
                       "add the component name to the manifest and build the bundle again"}};
    }
}

} // namespace

RunningFramework::RunningFramework() : m_framework(newFramework())
{
    try {
        m_framework.Start();
    } catch (const std::exception& error) {
        throw Problem{ExitStatus::framework,
                      {"cannot start the plug-in framework", "this process", error.what(),
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
                  {"the plug-in framework did not stop", "this process", why.empty() ? "it gave no reason" : why,
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
        throw Problem{ExitStatus::bundle,
                      {"cannot install the bundles", m_directory, error.what(),
                       "build the bundle again, or take the file out of the directory"}};
    }
    for (const Bundle& bundle : m_bundles) {
        checkComponentName(bundle);
    }
}

std::string FrameworkHost::culprit(const std::string& message) const
{
    std::string found;
    for (const Bundle& bundle : m_bundles) {
        const std::string location = bundle.GetLocation();
        if (location.size() > found.size() && message.find(location) != std::string::npos) {
            found = location;
        }
    }
    return found.empty() ? m_directory : found;
}

} // namespace ostrel::host
