// Handles that are kept beyond the stop of their bundle, its end and that of the framework.
#include "contract/robust/WildFixture.h"

#include <cppmicroservices/FrameworkFactory.h>
#include <cppmicroservices/LDAPFilter.h>
#include <cppmicroservices/ServiceObjects.h>

#include <optional>
#include <sstream>

namespace {

using namespace cppmicroservices;
using namespace ostrel::test;

struct Plain {
    int number = 7;
};

/// Everything that a bundle can get hold of.
struct Handles {
    BundleContext context;
    Bundle bundle;
    ServiceRegistration<Plain> registration;
    ServiceReference<Word> word;
    std::shared_ptr<Word> service;
    InterfaceMapConstPtr interfaces;
    std::optional<ServiceObjects<Word>> objects;

    static Handles of(BundleContext own)
    {
        Handles all;
        all.context = own;
        all.bundle = own.GetBundle();
        all.registration = own.RegisterService<Plain>(std::make_shared<Plain>(), {{"key", 1}});
        all.word = own.GetServiceReference<Word>();
        all.service = own.GetService(all.word);
        all.interfaces = own.GetService(ServiceReferenceU(all.word));
        all.objects.emplace(own.GetServiceObjects(all.word));
        return all;
    }

    /// What is true of all once the bundle has stopped.
    void expectStale()
    {
        char const* const text = "The bundle context is no longer valid";
        EXPECT_FALSE(context);
        EXPECT_EQ(text, thrownText<std::runtime_error>([this] { context.GetBundle(); }));
        EXPECT_EQ(text, thrownText<std::runtime_error>([this] { context.GetBundles(); }));
        EXPECT_EQ(text, thrownText<std::runtime_error>([this] { context.GetProperty("x"); }));
        EXPECT_EQ(text, thrownText<std::runtime_error>([this] { context.InstallBundles("x"); }));
        EXPECT_EQ(text, thrownText<std::runtime_error>([this] { context.GetServiceReferences<Word>(); }));
        EXPECT_EQ(text, thrownText<std::runtime_error>(
                            [this] { context.RegisterService<Plain>(std::make_shared<Plain>()); }));
        EXPECT_EQ("Service is unregistered", thrownText<std::logic_error>([this] { registration.Unregister(); }));
        EXPECT_EQ("Service is unregistered",
                  thrownText<std::logic_error>([this] { registration.SetProperties(ServiceProperties()); }));
        EXPECT_EQ("Service is unregistered", thrownText<std::logic_error>([this] { registration.GetReference(); }));
        EXPECT_FALSE(word);
        EXPECT_FALSE(word.GetBundle());
        EXPECT_TRUE(word.GetUsingBundles().empty());
        EXPECT_FALSE(word.GetProperty("service.id").Empty());
        EXPECT_TRUE(LDAPFilter(std::string("(service.id=*)")).Match(word));
        EXPECT_EQ("wild", service->text());
        EXPECT_EQ(1U, interfaces->size());
        EXPECT_EQ(nullptr, objects->GetService());
        EXPECT_TRUE(bundle);
        EXPECT_EQ("wild", bundle.GetSymbolicName());
        EXPECT_FALSE(bundle.GetBundleContext());
        std::ostringstream out;
        out << bundle << word << registration;
        EXPECT_NE(std::string::npos, out.str().find("Invalid service reference"));
    }
};

using Keeping = WildFixture;

TEST_F(Keeping, isHarmlessAfterTheStop)
{
    Handles kept;
    script.on("start wild", [&](BundleContext own) { kept = Handles::of(own); });
    auto bundle = start("wild");
    EXPECT_TRUE(kept.service);
    bundle.Stop();
    kept.expectStale();
    auto old = std::move(kept);
    bundle.Start(); // does not bring the old ones back
    EXPECT_TRUE(kept.context);
    EXPECT_EQ("wild", kept.objects->GetService()->text());
    EXPECT_FALSE(old.context);
    EXPECT_NE(old.context, kept.context);
    EXPECT_FALSE(old.word);
    host.stop();
}

TEST_F(Keeping, isHarmlessAfterTheEndOfTheBundle)
{
    Handles kept;
    script.on("start wild", [&](BundleContext own) { kept = Handles::of(own); });
    start("wild").Uninstall();
    EXPECT_EQ(uninstalled, kept.bundle.GetState());
    kept.expectStale();
    kept.service.reset();
    kept.interfaces.reset();
    EXPECT_EQ(1, countOf("end wild"));
    host.stop();
}

TEST_F(Keeping, isHarmlessAfterTheFramework)
{
    std::optional<Handles> kept;
    {
        Host other;
        BundleScript actions(other.context());
        actions.on("start wild", [&](BundleContext own) { kept = Handles::of(own); });
        other.context().InstallBundles(other.locationOf(other.add("wild"))).at(0).Start();
    }
    kept->expectStale();
    EXPECT_EQ(installed, kept->bundle.GetState());
    EXPECT_EQ("Bundle wild (location=" + kept->bundle.GetLocation() + ") belongs to a stopped framework",
              thrownText<std::runtime_error>([&] { kept->bundle.Start(); }));
    kept->bundle.Stop();
    kept->bundle.Uninstall();
    EXPECT_TRUE(kept->bundle.GetRegisteredServices().empty());
    kept.reset();
}

TEST_F(Keeping, isHarmlessInTheBundleItself)
{
    // A service that owns handles on its own bundle, registration and context, as members of services do.
    struct Owning {
        std::optional<Handles> handles;
    };
    std::weak_ptr<Owning> watch;
    script.on("start wild", [&](BundleContext own) {
        auto const owning = std::make_shared<Owning>();
        watch = owning;
        own.RegisterService<Owning>(owning);
        owning->handles = Handles::of(own);
    });
    auto bundle = start("wild");
    EXPECT_FALSE(watch.expired());
    bundle.Stop();
    EXPECT_TRUE(watch.expired());
    host.stop();
}

} // namespace
