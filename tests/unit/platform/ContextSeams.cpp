#include "unit/platform/ContextSeams.h"

#include "support/NextDefinition.h"

using cppmicroservices::AnyMap;
using cppmicroservices::Bundle;
using cppmicroservices::BundleContext;
using ostrel::test::nextDefinition;

namespace {

ostrel::test::ContextSeams* current = nullptr;

} // namespace

namespace ostrel::test {

ContextSeams::ContextSeams()
{
    current = this;
}

ContextSeams::~ContextSeams()
{
    current = nullptr;
}

} // namespace ostrel::test

std::vector<Bundle> BundleContext::InstallBundles(const std::string& location, const AnyMap& manifests)
{
    if (current != nullptr && current->installBundles) {
        return current->installBundles(location);
    }
    constexpr auto symbol =
        "_ZN16cppmicroservices13BundleContext14InstallBundlesERKNSt7__cxx1112basic_stringIcSt11char_"
        "traitsIcESaIcEEERKNS_6AnyMapE";
    return nextDefinition<std::vector<Bundle>(BundleContext*, const std::string&, const AnyMap&)>(symbol)(
        this, location, manifests);
}
