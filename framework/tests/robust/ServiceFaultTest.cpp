// Services, properties and streams that throw or act where the framework is at work on them.
#include "bundles/shared/WildValue.h"
#include "contract/robust/WildFixture.h"

#include <cppmicroservices/Constants.h>
#include <cppmicroservices/FrameworkFactory.h>
#include <cppmicroservices/SecurityException.h>
#include <cppmicroservices/ServiceFactory.h>

#include <atomic>
#include <functional>
#include <future>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <thread>

namespace {

using namespace cppmicroservices;
using namespace ostrel::test;

struct Plain {};

class ServiceFault : public WildFixture, public ::testing::WithParamInterface<int> {
protected:
    void throwAt(std::string const& event)
    {
        script.on(event, [kind = GetParam()](auto) { throwFault(kind); });
    }

    std::shared_ptr<ActivatorHooks> hooks() const
    {
        auto context = host.context();
        return context.GetService(context.GetServiceReference<ActivatorHooks>());
    }
};

INSTANTIATE_TEST_SUITE_P(faults, ServiceFault, ::testing::ValuesIn(faults));

TEST_P(ServiceFault, inUngetServiceDisturbsNobody)
{
    throwAt("release wild");
    auto bundle = start("wild");
    auto context = host.context();
    auto service = context.GetService(wordOf(bundle));
    service.reset();
    EXPECT_EQ(1, countOf("end wild"));
    service = context.GetService(wordOf(bundle));
    bundle.Stop();
    EXPECT_EQ(resolved, bundle.GetState());
    EXPECT_EQ(2, countOf("release wild"));
    EXPECT_EQ("wild", service->text());
    service.reset();
    EXPECT_EQ(2, countOf("end wild"));
    EXPECT_EQ(1, countOf("close wild"));
}

TEST_P(ServiceFault, inTheOutputOfAPropertyReachesTheWriterOnly)
{
    ServiceProperties const properties{{"value", Any(WildValue("value", hooks()))}};
    auto const registration = host.context().RegisterService<Plain>(std::make_shared<Plain>(), properties);
    throwAt("print value");
    std::ostringstream text;
    try {
        text << registration.GetReference();
    } catch (...) {
        EXPECT_EQ(1, countOf("print value"));
    }
    script.on("print value", nullptr);
    std::ostringstream again;
    again << registration.GetReference();
    EXPECT_NE(std::string::npos, again.str().find("value=value"));
}

TEST_P(ServiceFault, inTheValidationIsASecurityException)
{
    FrameworkConfiguration configuration;
    std::function<bool(Bundle const&)> const validation = [kind = GetParam()](Bundle const&) -> bool {
        throwFault(kind);
        return true;
    };
    configuration[Constants::FRAMEWORK_BUNDLE_VALIDATION_FUNC] = validation;
    auto other = FrameworkFactory().NewFramework(configuration);
    other.Start();
    auto bundle = other.GetBundleContext().InstallBundles(host.locationOf(host.add("alpha"))).at(0);
    EXPECT_EQ(faultText(GetParam()), thrownText<SecurityException>([&] { bundle.Start(); }));
    EXPECT_EQ(resolved, bundle.GetState());
    other.Stop();
    other.WaitForStop(std::chrono::milliseconds(0));
}

/// Runs an action at each byte.
class ActingBuffer final : public std::streambuf {
public:
    explicit ActingBuffer(std::function<void()> action) : m_action(std::move(action)) {}

    long calls = 0;

private:
    int_type overflow(int_type c) override
    {
        ++calls;
        m_action();
        return c;
    }
    std::function<void()> m_action;
};

/// A framework whose diagnostics go to the stream; in it a bundle is started and stopped.
void runWithLog(Host& host, std::ostream& log, std::function<void(BundleContext)> const& begun = nullptr)
{
    FrameworkConfiguration const configuration{{Constants::FRAMEWORK_LOG, Any(true)}};
    auto framework = FrameworkFactory().NewFramework(configuration, &log);
    framework.Start();
    auto context = framework.GetBundleContext();
    if (begun) {
        begun(context);
    }
    auto bundle = context.InstallBundles(host.locationOf(host.add("alpha"))).at(0);
    bundle.Start();
    EXPECT_EQ(Bundle::STATE_ACTIVE, bundle.GetState());
    bundle.Uninstall();
    framework.Stop();
    EXPECT_EQ(FrameworkEvent::FRAMEWORK_STOPPED, framework.WaitForStop(std::chrono::milliseconds(0)).GetType());
}

TEST_P(ServiceFault, inTheLogsStreamDisturbsNobody)
{
    ActingBuffer buffer([kind = GetParam()] { throwFault(kind); });
    std::ostream log(&buffer);
    log.exceptions(std::ios::badbit | std::ios::failbit);
    runWithLog(host, log);
    EXPECT_GT(buffer.calls, 0);
}

using ServiceActs = WildFixture;

TEST_F(ServiceActs, inTheLogsStream)
{
    BundleContext context;
    ActingBuffer buffer([&context] {
        if (context) {
            context.RegisterService<Plain>(std::make_shared<Plain>()).Unregister();
        }
    });
    std::ostream log(&buffer);
    runWithLog(host, log, [&](BundleContext own) { context = own; });
    EXPECT_GT(buffer.calls, 0);
}

TEST_F(ServiceActs, oneOfTwoThreadsUnregisters)
{
    auto context = host.context();
    for (int round = 0; round < 200; ++round) {
        auto registration = context.RegisterService<Plain>(std::make_shared<Plain>());
        std::atomic<int> waiting{2};
        auto const unregister = [&waiting, &registration] {
            --waiting;
            while (waiting > 0) {
                std::this_thread::yield();
            }
            try {
                registration.Unregister();
                return 1;
            } catch (std::logic_error const&) {
                return 0;
            }
        };
        auto other = std::async(std::launch::async, unregister);
        int const own = unregister();
        EXPECT_EQ(1, own + other.get());
    }
    EXPECT_FALSE(context.GetServiceReference<Plain>());
}

class UnregisteringFactory final : public ServiceFactory {
public:
    InterfaceMapConstPtr GetService(Bundle const& /*user*/, ServiceRegistrationBase const& registration) override
    {
        auto own = registration;
        own.Unregister();
        EXPECT_THROW(own.Unregister(), std::logic_error);
        EXPECT_THROW(own.SetProperties(ServiceProperties()), std::logic_error);
        return MakeInterfaceMap<Plain>(std::make_shared<Plain>());
    }

    void UngetService(Bundle const& /*user*/, ServiceRegistrationBase const& /*own*/,
                      InterfaceMapConstPtr const& /*object*/) override
    {
        ++givenBack;
    }

    int givenBack = 0;
};

TEST_F(ServiceActs, unregistersInItsOwnFactory)
{
    auto const factory = std::make_shared<UnregisteringFactory>();
    auto context = host.context();
    auto const reference =
        context.RegisterService<Plain>(std::static_pointer_cast<ServiceFactory>(factory)).GetReference();
    EXPECT_EQ(nullptr, context.GetService(reference));
    EXPECT_EQ(1, factory->givenBack);
    EXPECT_FALSE(reference);
    EXPECT_TRUE(host.context().GetBundle(0).GetServicesInUse().empty());
}

TEST_F(ServiceActs, registersWhenItGoes)
{
    auto bundle = start("wild");
    auto own = bundle.GetBundleContext();
    int refused = 0;
    auto const registerAnother = [&](auto) {
        try {
            own.RegisterService<Plain>(std::make_shared<Plain>());
        } catch (std::runtime_error const&) {
            ++refused; // thrown out of a destructor it would end the process
        }
    };
    auto word = host.context().GetService(wordOf(bundle));
    for (std::string const event : {"release wild", "end wild", "close wild"}) {
        script.on(event, registerAnother);
    }
    word.reset();
    EXPECT_EQ(0, refused);
    EXPECT_EQ(3U, bundle.GetRegisteredServices().size()); // its Word, and those of "release" and "end"
    word = host.context().GetService(wordOf(bundle));
    bundle.Stop();
    word.reset();
    EXPECT_EQ(3, refused);
    EXPECT_FALSE(host.context().GetServiceReference<Plain>());
    host.stop();
}

TEST_F(ServiceActs, registersWithTheFrameworksContextWhileItStops)
{
    start("wild");
    auto const service = std::make_shared<Plain>();
    std::weak_ptr<Plain> const watch = service;
    {
        auto system = host.context();
        auto const registerAnother = [system, service](auto) mutable {
            try {
                system.RegisterService<Plain>(service);
            } catch (std::runtime_error const&) {
                return; // by then the framework has stopped
            }
        };
        for (std::string const event : {"stop wild", "destroy wild", "close wild"}) {
            script.on(event, registerAnother);
        }
    }
    host.stop();
    EXPECT_EQ(1, countOf("close wild"));
    for (std::string const event : {"stop wild", "destroy wild", "close wild"}) {
        script.on(event, nullptr);
    }
    EXPECT_EQ(1, service.use_count()); // nothing keeps it
    EXPECT_FALSE(watch.expired());
}

} // namespace
