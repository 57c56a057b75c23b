#include "support/Seams.h"

#include "platform/InstallBundles.h"
#include "support/NextDefinition.h"

#include <sched.h>
#include <utility>

using cppmicroservices::Bundle;
using cppmicroservices::BundleContext;
using ostrel::platform::Utf16Path;
using ostrel::test::nextDefinition;

namespace {

ostrel::test::Seams* current = nullptr;

} // namespace

namespace ostrel::test {

Seams::Seams()
{
    current = this;
}

Seams::~Seams()
{
    current = nullptr;
}

void reallyStart(Bundle& bundle)
{
    nextDefinition<void(Bundle*)>("_ZN16cppmicroservices6Bundle5StartEv")(&bundle);
}

void reallyStop(Bundle& bundle)
{
    nextDefinition<void(Bundle*)>("_ZN16cppmicroservices6Bundle4StopEv")(&bundle);
}

std::vector<Bundle> reallyInstallBundles(BundleContext context, const Utf16Path& path)
{
    constexpr auto symbol = "_ZN6ostrel8platform14installBundlesEN16cppmicroservices13BundleContextERKNS0_9Utf16PathE";
    return nextDefinition<std::vector<Bundle>(BundleContext, const Utf16Path&)>(symbol)(std::move(context), path);
}

} // namespace ostrel::test

void Bundle::Start()
{
    if (current != nullptr && current->start) {
        current->start(*this);
    } else {
        ostrel::test::reallyStart(*this);
    }
}

void Bundle::Stop()
{
    if (current != nullptr && current->stop) {
        current->stop(*this);
    } else {
        ostrel::test::reallyStop(*this);
    }
}

Bundle::State Bundle::GetState() const
{
    if (current != nullptr && current->getState) {
        return current->getState(*this);
    }
    return nextDefinition<State(const Bundle*)>("_ZNK16cppmicroservices6Bundle8GetStateEv")(this);
}

std::string Bundle::GetLocation() const
{
    if (current != nullptr && current->getLocation) {
        return current->getLocation(*this);
    }
    return nextDefinition<std::string(const Bundle*)>("_ZNK16cppmicroservices6Bundle11GetLocationB5cxx11Ev")(this);
}

std::vector<Bundle> BundleContext::GetBundles(const std::string& location) const
{
    if (current != nullptr && current->getBundles) {
        return current->getBundles(location);
    }
    constexpr auto symbol = "_ZNK16cppmicroservices13BundleContext10GetBundlesERKNSt7__cxx1112basic_stringIcSt11char_"
                            "traitsIcESaIcEEE";
    return nextDefinition<std::vector<Bundle>(const BundleContext*, const std::string&)>(symbol)(this, location);
}

std::vector<Bundle> ostrel::platform::installBundles(BundleContext context, const Utf16Path& path)
{
    if (current != nullptr && current->installBundles) {
        return current->installBundles(path);
    }
    return ostrel::test::reallyInstallBundles(std::move(context), path);
}

extern "C" int sched_yield() noexcept
{
    if (current != nullptr && current->yield) {
        current->yield();
    }
    return 0;
}
