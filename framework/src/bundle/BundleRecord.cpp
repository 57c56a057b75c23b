#include "bundle/BundleRecord.h"

#include "bundle/BundleContextPrivate.h"

#include <functional>
#include <tuple>
#include <utility>

namespace cppmicroservices::detail::core {

BundleRecord::BundleRecord(BundleIdentity identity, std::weak_ptr<FrameworkCore> core,
                           std::weak_ptr<FrameworkHold> hold)
    : m_identity(std::move(identity)),
      m_installedAt(std::chrono::steady_clock::now()),
      m_core(std::move(core)),
      m_hold(std::move(hold))
{
}

bool BundleRecord::isBefore(BundleRecord const& other) const
{
    auto const place = [](BundleRecord const& record) {
        return std::make_tuple(record.m_identity.framework, record.id());
    };
    return place(*this) != place(other) ? place(*this) < place(other) : std::less<BundleRecord const*>()(this, &other);
}

std::string BundleRecord::text() const
{
    return "Bundle " + name() + " (location=" + location() + ")";
}

std::shared_ptr<BundleContextPrivate> BundleRecord::context() const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_context;
}

void BundleRecord::setContext(std::shared_ptr<BundleContextPrivate> context)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_context.swap(context); // the former one goes with the parameter, after the lock
}

} // namespace cppmicroservices::detail::core
