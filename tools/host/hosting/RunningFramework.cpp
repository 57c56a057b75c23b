#include "hosting/RunningFramework.h"

#include "frame/Problem.h"

#include <cppmicroservices/Any.h>
#include <cppmicroservices/Constants.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <chrono>
#include <dlfcn.h>
#include <string>

namespace ostrel::host {

namespace {

using cppmicroservices::Any;
using cppmicroservices::Framework;

Framework newFramework()
{
    // With RTLD_NOW a bundle that lacks a symbol fails to start, instead of ending the process at some later call.
    return cppmicroservices::FrameworkFactory().NewFramework(cppmicroservices::FrameworkConfiguration{
        {cppmicroservices::Constants::LIBRARY_LOAD_OPTIONS, Any{static_cast<int>(RTLD_NOW)}}});
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

} // namespace ostrel::host
