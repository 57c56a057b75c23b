// What events of other threads do while a tracker is being opened, step by step in one thread.
#include "contract/StartedFramework.h"
#include "contract/service/TestServices.h"

#include <cppmicroservices/ServiceEvent.h>
#include <cppmicroservices/ServiceReference.h>
#include <cppmicroservices/detail/TrackedItems.h>

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;
using contract::Plain;
using detail::TrackedServices;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Notes its calls.
class Customizer : public TrackedServices::Customizer {
public:
    explicit Customizer(std::vector<std::string>& calls) : m_calls(calls) {}

    TrackedServices::Object adding(ServiceReferenceBase const&, ServiceEvent const&) override
    {
        m_calls.emplace_back("adding");
        return std::make_shared<int>();
    }
    void modified(ServiceReferenceBase const&, ServiceEvent const&, TrackedServices::Object const&) override
    {
        m_calls.emplace_back("modified");
    }
    void removed(ServiceReferenceBase const&, ServiceEvent const&, TrackedServices::Object const&) override
    {
        m_calls.emplace_back("removed");
    }

private:
    std::vector<std::string>& m_calls;
};

/// A tracking whose listener is in place, and a service that was there when the services were looked for.
class OpeningTracking : public ostrel::test::StartedFramework {
protected:
    ServiceReferenceU addService()
    {
        return ServiceReferenceU(context.RegisterService<Plain>(std::make_shared<contract::Both>()).GetReference());
    }

    std::vector<std::string> calls;
    TrackedServices items{std::make_unique<Customizer>(calls)};
    ServiceReferenceU const found = addService();
};

TEST_F(OpeningTracking, addsWhatWasFound)
{
    items.addInitial({found});
    EXPECT_THAT(calls, ElementsAre("adding"));
    EXPECT_EQ(1U, items.size());
}

TEST_F(OpeningTracking, doesNotAddWhatWentBeforeItWasTakenIn)
{
    items.onWent(found, ServiceEvent());
    items.addInitial({found});
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_EQ(0U, items.size());
}

TEST_F(OpeningTracking, addsWhatWentAndCameBack)
{
    items.onWent(found, ServiceEvent());
    items.onCame(found, ServiceEvent());
    items.addInitial({found});
    EXPECT_THAT(calls, ElementsAre("adding"));
    EXPECT_EQ(1U, items.size());
}

TEST_F(OpeningTracking, addsOnceWhatCameByAnEventToo)
{
    items.onCame(found, ServiceEvent());
    items.addInitial({found});
    EXPECT_THAT(calls, ElementsAre("adding"));
    EXPECT_EQ(1U, items.size());
}

TEST_F(OpeningTracking, forgetsWhatWentOnceAllIsTakenIn)
{
    items.onWent(found, ServiceEvent());
    items.addInitial({});
    items.onCame(found, ServiceEvent());
    EXPECT_THAT(calls, ElementsAre("adding"));
    items.onWent(found, ServiceEvent());
    EXPECT_THAT(calls, ElementsAre("adding", "removed"));
    EXPECT_EQ(0U, items.size());
}

} // namespace
