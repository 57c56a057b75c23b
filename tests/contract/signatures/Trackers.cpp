#include "contract/signatures/Signature.h"

#include <cppmicroservices/BundleTracker.h>
#include <cppmicroservices/ServiceTracker.h>

using namespace cppmicroservices;

namespace {

struct Service {};
struct Label {};

template <class S, class T, class Param>
constexpr bool hasSignatures()
{
    using Tracker = ServiceTracker<S, T>;
    using Customizer = ServiceTrackerCustomizer<S, T>;
    using Reference = ServiceReference<S>;
    using Object = std::shared_ptr<Param>;
    CONTRACT_MEMBER(Tracker, Open, void(Tracker::*)());
    CONTRACT_MEMBER(Tracker, Close, void(Tracker::*)());
    CONTRACT_MEMBER(Tracker, WaitForService, Object(Tracker::*)());
    CONTRACT_MEMBER(Tracker, GetServiceReferences, std::vector<Reference>(Tracker::*)() const);
    CONTRACT_MEMBER(Tracker, GetServiceReference, Reference(Tracker::*)() const);
    CONTRACT_MEMBER(Tracker, GetService, Object(Tracker::*)(Reference const&) const);
    CONTRACT_MEMBER(Tracker, GetServices, std::vector<Object>(Tracker::*)() const);
    CONTRACT_MEMBER(Tracker, GetService, Object(Tracker::*)() const);
    CONTRACT_MEMBER(Tracker, Remove, void(Tracker::*)(Reference const&));
    CONTRACT_MEMBER(Tracker, Size, int(Tracker::*)() const);
    CONTRACT_MEMBER(Tracker, GetTrackingCount, int(Tracker::*)() const);
    CONTRACT_MEMBER(Tracker, GetTracked, void(Tracker::*)(typename Tracker::TrackingMap&) const);
    CONTRACT_MEMBER(Tracker, IsEmpty, bool(Tracker::*)() const);
    CONTRACT_MEMBER(Customizer, AddingService, Object(Customizer::*)(Reference const&));
    CONTRACT_MEMBER(Customizer, ModifiedService, void(Customizer::*)(Reference const&, Object const&));
    CONTRACT_MEMBER(Customizer, RemovedService, void(Customizer::*)(Reference const&, Object const&));
    static_assert(std::is_constructible_v<Tracker, BundleContext, Reference> &&
                  std::is_constructible_v<Tracker, BundleContext, Reference, Customizer*> &&
                  std::is_constructible_v<Tracker, BundleContext, std::string, Customizer*> &&
                  std::is_constructible_v<Tracker, BundleContext, char const*> &&
                  std::is_constructible_v<Tracker, BundleContext, LDAPFilter, Customizer*> &&
                  std::is_convertible_v<BundleContext, Tracker> &&
                  std::is_constructible_v<Tracker, BundleContext, Customizer*>);
    static_assert(std::is_abstract_v<Customizer> && std::has_virtual_destructor_v<Customizer> &&
                  std::has_virtual_destructor_v<Tracker> && std::is_base_of_v<Customizer, Tracker> &&
                  !std::is_move_constructible_v<Tracker>);
    return true;
}

template <class T>
constexpr bool hasBundleSignatures()
{
    using Tracker = BundleTracker<T>;
    using Customizer = BundleTrackerCustomizer<T>;
    CONTRACT_MEMBER(Tracker, Open, void(Tracker::*)());
    CONTRACT_MEMBER(Tracker, Close, void(Tracker::*)() noexcept);
    CONTRACT_MEMBER(Tracker, GetBundles, std::vector<Bundle>(Tracker::*)() const noexcept);
    CONTRACT_MEMBER(Tracker, GetObject, std::optional<T>(Tracker::*)(Bundle const&) const noexcept);
    CONTRACT_MEMBER(Tracker, GetTracked, typename Tracker::TrackingMap(Tracker::*)() const noexcept);
    CONTRACT_MEMBER(Tracker, GetTrackingCount, int(Tracker::*)() const noexcept);
    CONTRACT_MEMBER(Tracker, IsEmpty, bool(Tracker::*)() const noexcept);
    CONTRACT_MEMBER(Tracker, Remove, void(Tracker::*)(Bundle const&) noexcept);
    CONTRACT_MEMBER(Tracker, Size, std::size_t(Tracker::*)() const noexcept);
    CONTRACT_MEMBER(Tracker, AddingBundle, std::optional<T>(Tracker::*)(Bundle const&, BundleEvent const&));
    CONTRACT_MEMBER(Tracker, ModifiedBundle, void(Tracker::*)(Bundle const&, BundleEvent const&, T const&));
    CONTRACT_MEMBER(Tracker, RemovedBundle, void(Tracker::*)(Bundle const&, BundleEvent const&, T const&));
    CONTRACT_MEMBER(Customizer, AddingBundle, std::optional<T>(Customizer::*)(Bundle const&, BundleEvent const&));
    CONTRACT_MEMBER(Customizer, ModifiedBundle, void(Customizer::*)(Bundle const&, BundleEvent const&, T const&));
    CONTRACT_MEMBER(Customizer, RemovedBundle, void(Customizer::*)(Bundle const&, BundleEvent const&, T const&));
    static_assert(std::is_same_v<decltype(&Customizer::ConvertToTrackedType), T (*)(Bundle const&)>);
    using Mask = typename Tracker::BundleStateMaskType;
    static_assert(std::is_nothrow_constructible_v<Tracker, BundleContext const&, Mask> &&
                  std::is_constructible_v<Tracker, BundleContext, Bundle::State> &&
                  std::is_constructible_v<Tracker, BundleContext, Mask, std::nullptr_t> &&
                  !std::is_constructible_v<Tracker, BundleContext, Mask, std::shared_ptr<Tracker>> &&
                  std::is_constructible_v<Tracker, BundleContext, Mask, std::shared_ptr<Customizer>>);
    static_assert(Tracker::CreateStateMask(Bundle::STATE_ACTIVE, Bundle::State::STATE_STARTING) == 0x28);
    return true;
}

static_assert(hasSignatures<Service, Service, Service>() && hasSignatures<Service, Label, Label>());
static_assert(hasSignatures<void, void, InterfaceMap const>() && hasSignatures<void, Label, Label>());
static_assert(hasBundleSignatures<Bundle>() && hasBundleSignatures<std::shared_ptr<Label>>() &&
              hasBundleSignatures<int>());

// What comes with the headers of the trackers alone.
static_assert(std::is_same_v<decltype(Constants::SERVICE_RANKING), std::string const>);
static_assert(std::is_class_v<ServiceEvent> && std::is_class_v<Bundle> && std::is_class_v<BundleVersion>);

} // namespace
