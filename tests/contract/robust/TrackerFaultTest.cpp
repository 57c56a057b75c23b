// Trackers whose customizers throw anything, look at bundles that stop, and are kept beyond them.
#include "contract/robust/WildFixture.h"

#include <cppmicroservices/BundleTracker.h>
#include <cppmicroservices/PrototypeServiceFactory.h>
#include <cppmicroservices/ServiceObjects.h>
#include <cppmicroservices/ServiceTracker.h>

#include <functional>
#include <memory>
#include <optional>

namespace {

using namespace cppmicroservices;
using namespace ostrel::test;
using ::testing::ElementsAre;

class Services : public ServiceTrackerCustomizer<Word> {
public:
    explicit Services(BundleContext theContext) : context(std::move(theContext)) {}

    std::shared_ptr<Word> AddingService(ServiceReference<Word> const& reference) override
    {
        act(onAdding, reference, nullptr);
        return context.GetService(reference);
    }

    void ModifiedService(ServiceReference<Word> const& reference, std::shared_ptr<Word> const& word) override
    {
        act(onModified, reference, word);
    }

    void RemovedService(ServiceReference<Word> const& reference, std::shared_ptr<Word> const& word) override
    {
        act(onRemoved, reference, word);
    }

    using Action = std::function<void(ServiceReference<Word> const&, std::shared_ptr<Word> const&)>;
    Action onAdding;
    Action onModified;
    Action onRemoved;
    BundleContext context;

private:
    static void act(Action const& action, ServiceReference<Word> const& reference, std::shared_ptr<Word> const& word)
    {
        if (action) {
            action(reference, word);
        }
    }
};

/// Throws where it is told to; else it keeps the bundle.
class Bundles : public BundleTrackerCustomizer<> {
public:
    std::optional<Bundle> AddingBundle(Bundle const& bundle, BundleEvent const&) override
    {
        throwAt("adding");
        return bundle;
    }

    void ModifiedBundle(Bundle const&, BundleEvent const&, Bundle const&) override { throwAt("modified"); }
    void RemovedBundle(Bundle const&, BundleEvent const&, Bundle const&) override { throwAt("removed"); }

    std::string where;
    int kind = 0;

private:
    void throwAt(std::string const& place) const
    {
        if (place == where) {
            throwFault(kind);
        }
    }
};

class TrackerFault : public WildFixture, public ::testing::WithParamInterface<int> {
protected:
    Services::Action fault()
    {
        return [kind = GetParam()](auto const&, auto const&) { throwFault(kind); };
    }

    static constexpr auto rest = Bundle::STATE_INSTALLED | Bundle::STATE_RESOLVED;
};

INSTANTIATE_TEST_SUITE_P(faults, TrackerFault, ::testing::ValuesIn(faults));

TEST_P(TrackerFault, inACallByAServiceDisturbsNoBundle)
{
    Services customizer(host.context());
    ServiceTracker<Word> tracker(host.context(), &customizer);
    tracker.Open();
    auto bundle = install("alpha");
    customizer.onAdding = fault();
    bundle.Start();
    EXPECT_EQ(active, bundle.GetState());
    EXPECT_EQ(0, tracker.Size());
    bundle.Stop();
    customizer.onAdding = nullptr;
    customizer.onRemoved = fault();
    bundle.Start();
    EXPECT_EQ(1, tracker.Size());
    bundle.Stop();
    EXPECT_EQ(resolved, bundle.GetState());
    EXPECT_EQ(0, tracker.Size());
    bundle.Start();
    bundle.Uninstall();
    EXPECT_EQ(uninstalled, bundle.GetState());
    EXPECT_EQ(0, tracker.Size());
    EXPECT_EQ(4, tracker.GetTrackingCount());
    customizer.onRemoved = nullptr;
}

TEST_P(TrackerFault, inACallByABundleDisturbsNoBundle)
{
    auto const customizer = std::make_shared<Bundles>();
    customizer->kind = GetParam();
    BundleTracker<> tracker(host.context(), rest, customizer);
    tracker.Open();
    customizer->where = "adding";
    auto bundle = install("alpha");
    EXPECT_EQ(installed, bundle.GetState());
    EXPECT_EQ(0U, tracker.Size());
    bundle.Start();
    customizer->where = "";
    bundle.Stop();
    EXPECT_EQ(1U, tracker.Size());
    customizer->where = "removed";
    bundle.Start();
    EXPECT_EQ(active, bundle.GetState());
    EXPECT_EQ(0U, tracker.Size());
    customizer->where = "";
    BundleTracker<> all(host.context(), rest | Bundle::STATE_ACTIVE | Bundle::STATE_STARTING | Bundle::STATE_STOPPING,
                        customizer);
    all.Open();
    customizer->where = "modified";
    bundle.Stop();
    EXPECT_EQ(resolved, bundle.GetState());
    EXPECT_TRUE(all.GetObject(bundle));
    customizer->where = "";
}

class Kept : public WildFixture {
protected:
    struct Own {};
};

TEST_F(Kept, lookAtTheServicesOfABundleThatStops)
{
    auto bundle = start("alpha");
    std::vector<std::string> seen;
    Services customizer(host.context());
    customizer.onRemoved = [&](ServiceReference<Word> const& reference, std::shared_ptr<Word> const& word) {
        seen.push_back(word->text());
        seen.emplace_back(reference ? "registered" : "gone");
        EXPECT_EQ(bundle, reference.GetBundle());
        EXPECT_EQ(Bundle::STATE_STOPPING, bundle.GetState());
        EXPECT_TRUE(bundle.GetBundleContext());
        EXPECT_TRUE(host.context().GetService(reference));
        EXPECT_FALSE(host.context().GetServiceReference<Word>());
        auto own = host.context().RegisterService<Own>(std::make_shared<Own>());
        own.Unregister();
    };
    ServiceTracker<Word> tracker(host.context(), &customizer);
    tracker.Open();
    bundle.Stop();
    EXPECT_THAT(seen, ElementsAre("alpha", "registered"));
    EXPECT_EQ(0, tracker.Size());
}

TEST_F(Kept, beyondTheirBundle)
{
    auto bundle = start("alpha");
    auto const other = start("beta");
    auto services = std::make_unique<ServiceTracker<Word>>(bundle.GetBundleContext());
    auto bundles = std::make_unique<BundleTracker<>>(bundle.GetBundleContext(), Bundle::STATE_ACTIVE);
    services->Open();
    bundles->Open();
    EXPECT_EQ(2, services->Size());
    bundle.Uninstall();
    EXPECT_EQ("beta", services->GetService(wordOf(other))->text());
    EXPECT_TRUE(bundles->GetObject(other));
    services->Close();
    bundles->Close();
    EXPECT_EQ(0, services->Size());
    EXPECT_THROW(services->Open(), std::runtime_error);
    EXPECT_THROW(bundles->Open(), std::runtime_error);
    services.reset();
    bundles.reset();
    EXPECT_EQ(active, other.GetState());
}

TEST(KeptBeyondTheFramework, areHarmless)
{
    std::unique_ptr<ServiceTracker<Word>> services;
    std::unique_ptr<BundleTracker<>> bundles;
    std::shared_ptr<Word> word;
    {
        Host host;
        auto bundle = host.context().InstallBundles(host.locationOf(host.add("alpha"))).at(0);
        bundle.Start();
        services = std::make_unique<ServiceTracker<Word>>(host.context());
        bundles = std::make_unique<BundleTracker<>>(host.context(), Bundle::STATE_INSTALLED | Bundle::STATE_RESOLVED);
        services->Open();
        bundles->Open();
        word = services->GetService();
    }
    EXPECT_EQ("alpha", word->text());
    EXPECT_EQ(0, services->Size());
    EXPECT_FALSE(services->GetService());
    EXPECT_EQ(1U, bundles->GetBundles().size());
    services->Close();
    bundles->Close();
    EXPECT_EQ(0U, bundles->Size());
    EXPECT_THROW(services->Open(), std::runtime_error);
    EXPECT_THROW(bundles->Open(), std::runtime_error);
}

class PrototypeFault : public WildFixture, public ::testing::WithParamInterface<int> {
protected:
    class Factory : public PrototypeServiceFactory {
    public:
        explicit Factory(int theKind) : kind(theKind) {}

        InterfaceMapConstPtr GetService(Bundle const&, ServiceRegistrationBase const&) override
        {
            throwFault(kind);
            return nullptr;
        }

        void UngetService(Bundle const&, ServiceRegistrationBase const&, InterfaceMapConstPtr const&) override {}

        int const kind;
    };

    ServiceRegistration<Word> registerFaulty()
    {
        std::shared_ptr<ServiceFactory> const factory = std::make_shared<Factory>(GetParam());
        return host.context().RegisterService<Word>(factory);
    }
};

INSTANTIATE_TEST_SUITE_P(faults, PrototypeFault, ::testing::ValuesIn(faults));

TEST_P(PrototypeFault, givesNoObject)
{
    auto registration = registerFaulty();
    auto const reference = registration.GetReference();
    auto const objects = host.context().GetServiceObjects(reference);
    if (GetParam() == 0) {
        EXPECT_FALSE(objects.GetService());
    } else {
        EXPECT_ANY_THROW(objects.GetService());
    }
    registration.Unregister();
    EXPECT_FALSE(reference);
    EXPECT_FALSE(objects.GetService());
}

TEST_P(PrototypeFault, isNotTracked)
{
    ServiceTracker<Word> tracker(host.context());
    tracker.Open();
    auto registration = registerFaulty();
    EXPECT_EQ(0, tracker.Size());
    registration.Unregister();
}

} // namespace
