#pragma once

#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/Framework.h"
#include "cppmicroservices/ServiceReference.h"
#include "cppmicroservices/ServiceRegistration.h"

#include <memory>

namespace cppmicroservices {

class BundleContextPrivate;

namespace detail::core {

class BundleRecord;
class FrameworkHold;
class ServiceRecord;
struct ReferenceData;

/// The passage between the public handles and the records behind them; the only friend that the handles have here.
class HandleAccess {
public:
    /// A handle that keeps the framework alive, unless its last handle is gone already (it is stopping then).
    static Bundle bundle(std::shared_ptr<BundleRecord> record);
    static std::shared_ptr<BundleRecord> const& record(Bundle const& bundle) { return bundle.m_record; }
    static std::shared_ptr<FrameworkHold> const& hold(Bundle const& bundle) { return bundle.m_hold; }

    /// @throws std::invalid_argument "invalid bundle" when the handle names none
    static std::shared_ptr<BundleRecord> const& requireRecord(Bundle const& bundle);

    static Framework framework(std::shared_ptr<BundleRecord> record, std::shared_ptr<FrameworkHold> hold)
    {
        return Framework(std::move(record), std::move(hold));
    }

    static BundleContext context(std::shared_ptr<BundleContextPrivate> context)
    {
        return BundleContext(std::move(context));
    }

    static std::shared_ptr<BundleContextPrivate> const& run(BundleContext const& context) { return context.m_context; }

    static ServiceReferenceU reference(std::shared_ptr<ReferenceData const> data)
    {
        return ServiceReferenceU(std::move(data));
    }

    static std::shared_ptr<ReferenceData const> const& data(ServiceReferenceBase const& reference)
    {
        return reference.m_data;
    }

    static ListenerToken token(ListenerTokenId id) { return ListenerToken(id); }
    static ListenerTokenId id(ListenerToken const& token) { return token.m_id; }

    static ServiceRegistrationU registration(std::shared_ptr<ServiceRecord> record)
    {
        return ServiceRegistrationU(ServiceRegistrationBase(std::move(record)));
    }
};

} // namespace detail::core

} // namespace cppmicroservices
