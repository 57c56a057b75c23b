#include "cppmicroservices/Framework.h"

#include "bundle/BundleRecord.h"
#include "framework/FrameworkCore.h"
#include "framework/HandleAccess.h"

#include <stdexcept>
#include <utility>

namespace cppmicroservices {

namespace {

std::shared_ptr<detail::core::FrameworkCore> coreOf(Framework const& framework)
{
    auto found = detail::core::HandleAccess::requireRecord(framework)->core();
    if (!found) {
        throw std::runtime_error("The framework is gone.");
    }
    return found;
}

} // namespace

Framework::Framework(Bundle b) : Bundle(std::move(b))
{
    auto const& record = detail::core::HandleAccess::requireRecord(*this);
    if (!record->isSystemBundle()) {
        throw std::logic_error(record->text() + " is no framework; its bundle number 0 is.");
    }
}

Framework::Framework(std::shared_ptr<detail::core::BundleRecord> record,
                     std::shared_ptr<detail::core::FrameworkHold> hold)
    : Bundle(std::move(record), std::move(hold))
{
}

Framework::Framework(Framework const& other) = default;
Framework::Framework(Framework&& other) noexcept = default;
Framework& Framework::operator=(Framework const& other) = default;
Framework& Framework::operator=(Framework&& other) noexcept = default;

void Framework::Init()
{
    auto const hold = detail::core::HandleAccess::hold(*this);
    coreOf(*this)->init();
}

FrameworkEvent Framework::WaitForStop(std::chrono::milliseconds const& timeout)
{
    auto const hold = detail::core::HandleAccess::hold(*this);
    return coreOf(*this)->waitForStop(timeout);
}

} // namespace cppmicroservices
