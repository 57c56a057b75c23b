#include "framework/HandleAccess.h"

#include "bundle/BundleRecord.h"

#include <stdexcept>
#include <utility>

namespace cppmicroservices::detail::core {

Bundle HandleAccess::bundle(std::shared_ptr<BundleRecord> record)
{
    auto hold = record ? record->hold() : nullptr;
    return Bundle(std::move(record), std::move(hold));
}

std::shared_ptr<BundleRecord> const& HandleAccess::requireRecord(Bundle const& bundle)
{
    if (!bundle.m_record) {
        throw std::invalid_argument("invalid bundle");
    }
    return bundle.m_record;
}

} // namespace cppmicroservices::detail::core
