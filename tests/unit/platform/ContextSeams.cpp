#include "unit/platform/ContextSeams.h"

#include "support/NextDefinition.h"

using cppmicroservices::AnyMap;
using cppmicroservices::Bundle;
using cppmicroservices::BundleContext;
using ostrel::test::nextDefinition;

namespace {

ostrel::test::ContextSeams* current = nullptr;

std::vector<Bundle> installBundles(BundleContext& context, const std::string& location, const AnyMap& manifests)
{
    constexpr auto symbol =
        "_ZN16cppmicroservices13BundleContext14InstallBundlesERKNSt7__cxx1112basic_stringIcSt11char_"
        "traitsIcESaIcEEERKNS_6AnyMapE";
    return nextDefinition<std::vector<Bundle>(BundleContext*, const std::string&, const AnyMap&)>(symbol)(
        &context, location, manifests);
}

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

ContextSeams::Bundles reallyInstallBundles(BundleContext context, const std::string& location)
{
    return installBundles(context, location, AnyMap{AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS});
}

ContextSeams::Bundles reallyGetBundles(const BundleContext& context)
{
    constexpr auto symbol = "_ZNK16cppmicroservices13BundleContext10GetBundlesEv";
    return nextDefinition<std::vector<Bundle>(const BundleContext*)>(symbol)(&context);
}

} // namespace ostrel::test

std::vector<Bundle> BundleContext::InstallBundles(const std::string& location, const AnyMap& manifests)
{
    if (current != nullptr && current->installBundles) {
        return current->installBundles(location);
    }
    return installBundles(*this, location, manifests);
}

std::vector<Bundle> BundleContext::GetBundles() const
{
    if (current != nullptr && current->getBundles) {
        return current->getBundles();
    }
    return ostrel::test::reallyGetBundles(*this);
}
