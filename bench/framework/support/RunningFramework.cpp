#include "support/RunningFramework.h"

#include <cppmicroservices/Constants.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <chrono>
#include <dlfcn.h>

namespace bench {

namespace {

/// Symbols are bound when a library is loaded: each framework has a default of its own, and they cost differently.
cppmicroservices::FrameworkConfiguration configuration()
{
    return {{cppmicroservices::Constants::LIBRARY_LOAD_OPTIONS, cppmicroservices::Any(int{RTLD_NOW})}};
}

} // namespace

RunningFramework::RunningFramework() : m_framework(cppmicroservices::FrameworkFactory().NewFramework(configuration()))
{
    m_framework.Start();
}

RunningFramework::~RunningFramework()
{
    m_framework.Stop();
    m_framework.WaitForStop(std::chrono::milliseconds::zero());
}

} // namespace bench
