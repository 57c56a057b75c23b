#include "support/FrameworkWithServices.h"

#include "support/Echo.h"

#include <cppmicroservices/Constants.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <chrono>
#include <dlfcn.h>
#include <string>

namespace bench {

namespace {

cppmicroservices::FrameworkConfiguration configuration(int count)
{
    return {{serviceCountProperty, cppmicroservices::Any(count)},
            {cppmicroservices::Constants::LIBRARY_LOAD_OPTIONS, cppmicroservices::Any(int{RTLD_NOW})}};
}

} // namespace

FrameworkWithServices::FrameworkWithServices(int count)
    : m_framework(cppmicroservices::FrameworkFactory().NewFramework(configuration(count)))
{
    m_framework.Start();
}

FrameworkWithServices::~FrameworkWithServices()
{
    m_framework.Stop();
    m_framework.WaitForStop(std::chrono::milliseconds::zero());
}

} // namespace bench
