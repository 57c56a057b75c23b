// What the events say of themselves.
#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"
#include "contract/event/Seen.h"
#include "contract/service/TestServices.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleEvent.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/ServiceEvent.h>

#include <exception>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Named;
using contract::Plain;
using contract::textOf;
using ostrel::test::installByManifest;
using ostrel::test::thrownText;
using EventText = ostrel::test::StartedFramework;

TEST(EventTypes, haveNames)
{
    EXPECT_EQ("REGISTERED", textOf(ServiceEvent::SERVICE_REGISTERED));
    EXPECT_EQ("MODIFIED", textOf(ServiceEvent::SERVICE_MODIFIED));
    EXPECT_EQ("UNREGISTERING", textOf(ServiceEvent::SERVICE_UNREGISTERING));
    EXPECT_EQ("MODIFIED_ENDMATCH", textOf(ServiceEvent::SERVICE_MODIFIED_ENDMATCH));
    EXPECT_EQ("unknown service event type (16)", textOf(static_cast<ServiceEvent::Type>(16)));

    EXPECT_EQ("INSTALLED", textOf(BundleEvent::BUNDLE_INSTALLED));
    EXPECT_EQ("RESOLVED", textOf(BundleEvent::BUNDLE_RESOLVED));
    EXPECT_EQ("STARTING", textOf(BundleEvent::BUNDLE_STARTING));
    EXPECT_EQ("STARTED", textOf(BundleEvent::BUNDLE_STARTED));
    EXPECT_EQ("STOPPING", textOf(BundleEvent::BUNDLE_STOPPING));
    EXPECT_EQ("STOPPED", textOf(BundleEvent::BUNDLE_STOPPED));
    EXPECT_EQ("UNRESOLVED", textOf(BundleEvent::BUNDLE_UNRESOLVED));
    EXPECT_EQ("UNINSTALLED", textOf(BundleEvent::BUNDLE_UNINSTALLED));
    EXPECT_EQ("LAZY_ACTIVATION", textOf(BundleEvent::BUNDLE_LAZY_ACTIVATION));
    EXPECT_EQ("Unknown bundle event type (8)", textOf(BundleEvent::BUNDLE_UPDATED));
    EXPECT_EQ("Unknown bundle event type (0)", textOf(static_cast<BundleEvent::Type>(0)));

    EXPECT_EQ("STARTED", textOf(FrameworkEvent::FRAMEWORK_STARTED));
    EXPECT_EQ("ERROR", textOf(FrameworkEvent::FRAMEWORK_ERROR));
    EXPECT_EQ("WARNING", textOf(FrameworkEvent::FRAMEWORK_WARNING));
    EXPECT_EQ("INFO", textOf(FrameworkEvent::FRAMEWORK_INFO));
    EXPECT_EQ("STOPPED", textOf(FrameworkEvent::FRAMEWORK_STOPPED));
    EXPECT_EQ("STOPPED_UPDATE", textOf(FrameworkEvent::FRAMEWORK_STOPPED_UPDATE));
    EXPECT_EQ("WAIT_TIMEDOUT", textOf(FrameworkEvent::FRAMEWORK_WAIT_TIMEDOUT));
    EXPECT_EQ("Unknown bundle event type (4)", textOf(static_cast<FrameworkEvent::Type>(4)));
}

TEST(EventTypes, haveTheirNumbers)
{
    EXPECT_EQ(1U, ServiceEvent::SERVICE_REGISTERED);
    EXPECT_EQ(2U, ServiceEvent::SERVICE_MODIFIED);
    EXPECT_EQ(4U, ServiceEvent::SERVICE_UNREGISTERING);
    EXPECT_EQ(8U, ServiceEvent::SERVICE_MODIFIED_ENDMATCH);
    EXPECT_EQ(1U, BundleEvent::BUNDLE_INSTALLED);
    EXPECT_EQ(2U, BundleEvent::BUNDLE_STARTED);
    EXPECT_EQ(4U, BundleEvent::BUNDLE_STOPPED);
    EXPECT_EQ(8U, BundleEvent::BUNDLE_UPDATED);
    EXPECT_EQ(0x10U, BundleEvent::BUNDLE_UNINSTALLED);
    EXPECT_EQ(0x20U, BundleEvent::BUNDLE_RESOLVED);
    EXPECT_EQ(0x40U, BundleEvent::BUNDLE_UNRESOLVED);
    EXPECT_EQ(0x80U, BundleEvent::BUNDLE_STARTING);
    EXPECT_EQ(0x100U, BundleEvent::BUNDLE_STOPPING);
    EXPECT_EQ(0x200U, BundleEvent::BUNDLE_LAZY_ACTIVATION);
}

TEST(DefaultEvents, areFalse)
{
    EXPECT_FALSE(ServiceEvent());
    EXPECT_EQ("NONE", textOf(ServiceEvent()));
    EXPECT_FALSE(BundleEvent());
    EXPECT_EQ("NONE", textOf(BundleEvent()));
    EXPECT_EQ(BundleEvent::BUNDLE_UNINSTALLED, BundleEvent().GetType());
    EXPECT_FALSE(BundleEvent().GetBundle());
    EXPECT_FALSE(BundleEvent().GetOrigin());
    EXPECT_TRUE(BundleEvent() == BundleEvent());
    EXPECT_FALSE(FrameworkEvent());
    EXPECT_EQ("NONE", textOf(FrameworkEvent()));
}

TEST_F(EventText, namesTheService)
{
    auto registration = context.RegisterService<Plain>(std::make_shared<Both>());
    auto const reference = registration.GetReference();
    ServiceEvent const event(ServiceEvent::SERVICE_MODIFIED, reference);
    ServiceEvent const copy(event);
    ServiceEvent assigned;
    assigned = copy;
    EXPECT_TRUE(assigned);
    EXPECT_EQ(ServiceEvent::SERVICE_MODIFIED, assigned.GetType());
    EXPECT_TRUE(assigned.GetServiceReference() == reference);
    EXPECT_TRUE(assigned.GetServiceReference<Plain>());
    EXPECT_FALSE(assigned.GetServiceReference<Named>());
    auto const id = reference.GetProperty("service.id").ToString();
    EXPECT_EQ("MODIFIED " + id + " objectClass=[contract::Plain])", textOf(assigned));
    registration.Unregister();
    EXPECT_EQ("MODIFIED", textOf(assigned));
    EXPECT_EQ("MODIFIED", textOf(ServiceEvent(ServiceEvent::SERVICE_MODIFIED, ServiceReferenceU())));
}

TEST_F(EventText, namesTheBundle)
{
    auto const other = installByManifest(context, {"plain"}).at(0);
    BundleEvent const event(BundleEvent::BUNDLE_STARTED, framework);
    EXPECT_TRUE(event);
    EXPECT_EQ("STARTED #0 (system_bundle at System Bundle)", textOf(event));
    EXPECT_TRUE(event.GetBundle() == framework);
    EXPECT_TRUE(event.GetOrigin() == framework);
    EXPECT_TRUE(BundleEvent(BundleEvent::BUNDLE_STARTED, framework, other).GetOrigin() == other);

    EXPECT_TRUE(event == BundleEvent(event));
    EXPECT_TRUE(event == BundleEvent(BundleEvent::BUNDLE_STARTED, framework, framework));
    EXPECT_FALSE(event == BundleEvent(BundleEvent::BUNDLE_STOPPED, framework));
    EXPECT_FALSE(event == BundleEvent(BundleEvent::BUNDLE_STARTED, framework, other));
    EXPECT_FALSE(event == BundleEvent());
    EXPECT_FALSE(BundleEvent() == event);
}

TEST_F(EventText, refusesBundleEventsOfNoBundle)
{
    EXPECT_EQ("invalid bundle",
              thrownText<std::invalid_argument>([] { BundleEvent(BundleEvent::BUNDLE_STARTED, Bundle()); }));
    EXPECT_EQ("invalid origin", thrownText<std::invalid_argument>(
                                    [this] { BundleEvent(BundleEvent::BUNDLE_STARTED, framework, Bundle()); }));
}

TEST_F(EventText, tellsTheException)
{
    auto const lines = [this](std::exception_ptr const& thrown) {
        return textOf(FrameworkEvent(FrameworkEvent::FRAMEWORK_INFO, framework, "words", thrown));
    };
    std::string const head = "INFO\n words\n Bundle[id=0, loc=System Bundle, name=system_bundle, state=ACTIVE]\n";
    EXPECT_EQ(head + " Exception: NONE", lines(nullptr));
    EXPECT_EQ(head + " Exception: reason", lines(std::make_exception_ptr(std::runtime_error("reason"))));
    EXPECT_EQ(head + " Exception: unknown", lines(std::make_exception_ptr(42)));
}

TEST_F(EventText, comparesFrameworkEventsByAllParts)
{
    auto const thrown = std::make_exception_ptr(1);
    FrameworkEvent const event(FrameworkEvent::FRAMEWORK_INFO, framework, "m", thrown);
    EXPECT_TRUE(event == FrameworkEvent(FrameworkEvent::FRAMEWORK_INFO, framework, "m", thrown));
    EXPECT_FALSE(event == FrameworkEvent(FrameworkEvent::FRAMEWORK_INFO, framework, "m"));
    EXPECT_FALSE(event == FrameworkEvent(FrameworkEvent::FRAMEWORK_INFO, framework, "n", thrown));
    EXPECT_FALSE(event == FrameworkEvent(FrameworkEvent::FRAMEWORK_WARNING, framework, "m", thrown));
    EXPECT_FALSE(event == FrameworkEvent());
}

} // namespace
