#include "integration/console/ConsoleSeams.h"

#include "support/NextDefinition.h"

#include <cppmicroservices/BundleContext.h>

using cppmicroservices::AnyMap;
using cppmicroservices::Bundle;
using cppmicroservices::BundleContext;
using ostrel::test::nextDefinition;

namespace {

ostrel::test::ConsoleSeams* current = nullptr;

} // namespace

namespace ostrel::test {

ConsoleSeams::ConsoleSeams()
{
    current = this;
}

ConsoleSeams::~ConsoleSeams()
{
    current = nullptr;
}

std::string reallyGetSymbolicName(const Bundle& bundle)
{
    return nextDefinition<std::string(const Bundle*)>("_ZNK16cppmicroservices6Bundle15GetSymbolicNameB5cxx11Ev")(
        &bundle);
}

} // namespace ostrel::test

std::vector<Bundle> BundleContext::GetBundles() const
{
    if (current != nullptr && current->getAllBundles) {
        return current->getAllBundles();
    }
    return nextDefinition<std::vector<Bundle>(const BundleContext*)>(
        "_ZNK16cppmicroservices13BundleContext10GetBundlesEv")(this);
}

std::string Bundle::GetSymbolicName() const
{
    if (current != nullptr && current->getSymbolicName) {
        return current->getSymbolicName(*this);
    }
    return ostrel::test::reallyGetSymbolicName(*this);
}

const AnyMap& Bundle::GetHeaders() const
{
    if (current != nullptr && current->getHeaders) {
        return current->getHeaders(*this);
    }
    return nextDefinition<const AnyMap&(const Bundle*)>("_ZNK16cppmicroservices6Bundle10GetHeadersEv")(this);
}
