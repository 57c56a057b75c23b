#define US_BUNDLE_NAME contract_signatures
#include "contract/signatures/Signature.h"

#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleInitialization.h>
#include <cppmicroservices/GetBundleContext.h>

using namespace cppmicroservices;

static_assert(std::is_abstract_v<BundleActivator> && std::has_virtual_destructor_v<BundleActivator>);
CONTRACT_MEMBER(BundleActivator, Start, void (BundleActivator::*)(BundleContext));
CONTRACT_MEMBER(BundleActivator, Stop, void (BundleActivator::*)(BundleContext));
static_assert(std::is_same_v<decltype(&cppmicroservices::GetBundleContext), BundleContext (*)()>);
static_assert(std::is_same_v<SetBundleContextFn, std::function<void(BundleContextPrivate*)>>);

namespace contract {

struct Activator final : BundleActivator {
    void Start(BundleContext) override {}
    void Stop(BundleContext) override {}
};

} // namespace contract

// Without a semicolon, with a qualified name, and after that with an alias, for the next bundle of the same source.
CPPMICROSERVICES_INITIALIZE_BUNDLE
CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(contract::Activator)
static_assert(std::is_same_v<decltype(&US_CREATE_ACTIVATOR_FUNC(US_BUNDLE_NAME)), BundleActivator* (*)()>);
static_assert(std::is_same_v<decltype(&US_DESTROY_ACTIVATOR_FUNC(US_BUNDLE_NAME)), void (*)(BundleActivator*)>);
static_assert(std::is_same_v<decltype(&US_SET_CTX_FUNC(US_BUNDLE_NAME)), void (*)(BundleContextPrivate*)>);
static_assert(std::is_same_v<decltype(&US_GET_CTX_FUNC(US_BUNDLE_NAME)), BundleContextPrivate* (*)()>);
static_assert(std::is_same_v<decltype(US_CTX_INS(US_BUNDLE_NAME)), std::atomic<BundleContextPrivate*>>);

#undef US_BUNDLE_NAME
#define US_BUNDLE_NAME contract_signatures_more
using OtherActivator = contract::Activator;
CPPMICROSERVICES_INITIALIZE_BUNDLE
CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(OtherActivator)
