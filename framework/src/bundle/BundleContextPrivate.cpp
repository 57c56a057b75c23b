#include "bundle/BundleContextPrivate.h"

#include "bundle/BundleRecord.h"

#include <mutex>
#include <unordered_map>
#include <utility>

namespace cppmicroservices {

namespace {

struct Addresses {
    std::mutex mutex;
    std::unordered_map<BundleContextPrivate const*, std::weak_ptr<BundleContextPrivate>> living;
};

Addresses& addresses()
{
    // Never destroyed: contexts may be used and destroyed while the process ends.
    static auto* const theAddresses = new Addresses;
    return *theAddresses;
}

} // namespace

std::shared_ptr<BundleContextPrivate>
BundleContextPrivate::make(std::shared_ptr<detail::core::BundleRecord> const& bundle,
                           std::shared_ptr<detail::core::ServiceRegistry> services)
{
    auto context = std::make_shared<BundleContextPrivate>(bundle, bundle->core(), std::move(services));
    Addresses& all = addresses();
    std::lock_guard<std::mutex> const lock(all.mutex);
    all.living.emplace(context.get(), context);
    return context;
}

BundleContextPrivate::BundleContextPrivate(std::weak_ptr<detail::core::BundleRecord> bundle,
                                           std::weak_ptr<detail::core::FrameworkCore> core,
                                           std::shared_ptr<detail::core::ServiceRegistry> services)
    : m_bundle(std::move(bundle)), m_core(std::move(core)), m_services(std::move(services))
{
}

BundleContextPrivate::~BundleContextPrivate()
{
    Addresses& all = addresses();
    std::lock_guard<std::mutex> const lock(all.mutex);
    all.living.erase(this);
}

std::shared_ptr<BundleContextPrivate> BundleContextPrivate::at(BundleContextPrivate* address)
{
    Addresses& all = addresses();
    std::lock_guard<std::mutex> const lock(all.mutex);
    auto const found = all.living.find(address);
    return found != all.living.end() ? found->second.lock() : nullptr;
}

} // namespace cppmicroservices
