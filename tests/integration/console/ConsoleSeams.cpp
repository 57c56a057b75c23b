#include "integration/console/ConsoleSeams.h"

#include <cppmicroservices/BundleContext.h>

#include <dlfcn.h>
#include <stdexcept>

using cppmicroservices::AnyMap;
using cppmicroservices::Bundle;
using cppmicroservices::BundleContext;

namespace {

ostrel::test::ConsoleSeams* current = nullptr;

// A member function takes its object as a plain first argument, on every platform that this project is built for.
template <typename Function>
Function* next(const char* symbol)
{
    void* const found = ::dlsym(RTLD_NEXT, symbol);
    if (found == nullptr) {
        throw std::logic_error{std::string{"no library defines "} + symbol};
    }
    return reinterpret_cast<Function*>(found);
}

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
    return next<std::string(const Bundle*)>("_ZNK16cppmicroservices6Bundle15GetSymbolicNameB5cxx11Ev")(&bundle);
}

} // namespace ostrel::test

std::vector<Bundle> BundleContext::GetBundles() const
{
    if (current != nullptr && current->getAllBundles) {
        return current->getAllBundles();
    }
    return next<std::vector<Bundle>(const BundleContext*)>("_ZNK16cppmicroservices13BundleContext10GetBundlesEv")(this);
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
    return next<const AnyMap&(const Bundle*)>("_ZNK16cppmicroservices6Bundle10GetHeadersEv")(this);
}
