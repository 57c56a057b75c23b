#include "contract/signatures/Signature.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/BundleEvent.h>
#include <cppmicroservices/BundleResource.h>
#include <cppmicroservices/BundleResourceStream.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>
#include <cppmicroservices/SecurityException.h>
#include <cppmicroservices/SharedLibrary.h>
#include <cppmicroservices/SharedLibraryException.h>

using namespace cppmicroservices;

// The deprecated ones belong to it as well.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

static_assert(contract::isValue<Bundle> && std::has_virtual_destructor_v<Bundle>);
static_assert(std::is_nothrow_move_constructible_v<Bundle> && std::is_nothrow_move_assignable_v<Bundle>);
static_assert(std::is_assignable_v<Bundle&, std::nullptr_t> && !std::is_convertible_v<Bundle, bool>);
static_assert(std::is_same_v<Bundle::TimeStamp, std::chrono::steady_clock::time_point>);
static_assert(Bundle::STATE_UNINSTALLED == 1 && Bundle::STATE_INSTALLED == 2 && Bundle::STATE_RESOLVED == 4 &&
              Bundle::STATE_STARTING == 8 && Bundle::STATE_STOPPING == 16 && Bundle::STATE_ACTIVE == 32);
static_assert(Bundle::START_TRANSIENT == 1 && Bundle::START_ACTIVATION_POLICY == 2 && Bundle::STOP_TRANSIENT == 1);
static_assert(std::is_same_v<std::underlying_type_t<Bundle::State>, uint32_t>);
static_assert(std::is_default_constructible_v<std::hash<Bundle>>);
CONTRACT_MEMBER(Bundle, operator==, bool (Bundle::*)(Bundle const&) const);
CONTRACT_MEMBER(Bundle, operator!=, bool (Bundle::*)(Bundle const&) const);
CONTRACT_MEMBER(Bundle, operator<, bool (Bundle::*)(Bundle const&) const);
CONTRACT_MEMBER(Bundle, GetState, Bundle::State (Bundle::*)() const);
CONTRACT_MEMBER(Bundle, GetBundleContext, BundleContext (Bundle::*)() const);
CONTRACT_MEMBER(Bundle, GetBundleId, long (Bundle::*)() const);
CONTRACT_MEMBER(Bundle, GetLocation, std::string (Bundle::*)() const);
CONTRACT_MEMBER(Bundle, GetSymbol, void* (Bundle::*)(void*, std::string const&) const);
CONTRACT_MEMBER(Bundle, GetSymbolicName, std::string (Bundle::*)() const);
CONTRACT_MEMBER(Bundle, GetVersion, BundleVersion (Bundle::*)() const);
CONTRACT_MEMBER(Bundle, GetProperties, std::map<std::string, Any> (Bundle::*)() const);
CONTRACT_MEMBER(Bundle, GetHeaders, AnyMap const& (Bundle::*)() const);
CONTRACT_MEMBER(Bundle, GetProperty, Any (Bundle::*)(std::string const&) const);
CONTRACT_MEMBER(Bundle, GetPropertyKeys, std::vector<std::string> (Bundle::*)() const);
CONTRACT_MEMBER(Bundle, GetRegisteredServices, std::vector<ServiceReferenceU> (Bundle::*)() const);
CONTRACT_MEMBER(Bundle, GetServicesInUse, std::vector<ServiceReferenceU> (Bundle::*)() const);
CONTRACT_MEMBER(Bundle, GetResource, BundleResource (Bundle::*)(std::string const&) const);
CONTRACT_MEMBER(Bundle, FindResources,
                std::vector<BundleResource> (Bundle::*)(std::string const&, std::string const&, bool) const);
CONTRACT_MEMBER(Bundle, GetLastModified, Bundle::TimeStamp (Bundle::*)() const);
CONTRACT_MEMBER(Bundle, Start, void (Bundle::*)(uint32_t));
CONTRACT_MEMBER(Bundle, Start, void (Bundle::*)());
CONTRACT_MEMBER(Bundle, Stop, void (Bundle::*)(uint32_t));
CONTRACT_MEMBER(Bundle, Stop, void (Bundle::*)());
CONTRACT_MEMBER(Bundle, Uninstall, void (Bundle::*)());

static_assert(contract::isValue<BundleContext> && !std::is_convertible_v<BundleContext, bool>);
static_assert(std::is_assignable_v<BundleContext&, std::nullptr_t>);
CONTRACT_MEMBER(BundleContext, operator<, bool (BundleContext::*)(BundleContext const&) const);
CONTRACT_MEMBER(BundleContext, GetProperty, Any (BundleContext::*)(std::string const&) const);
CONTRACT_MEMBER(BundleContext, GetProperties, AnyMap (BundleContext::*)() const);
CONTRACT_MEMBER(BundleContext, GetBundle, Bundle (BundleContext::*)() const);
CONTRACT_MEMBER(BundleContext, GetBundle, Bundle (BundleContext::*)(long) const);
CONTRACT_MEMBER(BundleContext, GetBundles, std::vector<Bundle> (BundleContext::*)(std::string const&) const);
CONTRACT_MEMBER(BundleContext, GetBundles, std::vector<Bundle> (BundleContext::*)() const);
CONTRACT_MEMBER(BundleContext, RegisterService,
                ServiceRegistrationU (BundleContext::*)(InterfaceMapConstPtr const&, ServiceProperties const&));
CONTRACT_MEMBER(BundleContext, GetServiceReferences,
                std::vector<ServiceReferenceU> (BundleContext::*)(std::string const&, std::string const&));
CONTRACT_MEMBER(BundleContext, GetServiceReference, ServiceReferenceU (BundleContext::*)(std::string const&));
CONTRACT_MEMBER(BundleContext, GetService, std::shared_ptr<void> (BundleContext::*)(ServiceReferenceBase const&));
CONTRACT_MEMBER(BundleContext, GetService, InterfaceMapConstPtr (BundleContext::*)(ServiceReferenceU const&));
CONTRACT_MEMBER(BundleContext, AddServiceListener,
                ListenerToken (BundleContext::*)(ServiceListener const&, std::string const&));
CONTRACT_MEMBER(BundleContext, RemoveServiceListener, void (BundleContext::*)(ServiceListener const&));
CONTRACT_MEMBER(BundleContext, AddBundleListener, ListenerToken (BundleContext::*)(BundleListener const&));
CONTRACT_MEMBER(BundleContext, RemoveBundleListener, void (BundleContext::*)(BundleListener const&));
CONTRACT_MEMBER(BundleContext, AddFrameworkListener, ListenerToken (BundleContext::*)(FrameworkListener const&));
CONTRACT_MEMBER(BundleContext, RemoveFrameworkListener, void (BundleContext::*)(FrameworkListener const&));
CONTRACT_MEMBER(BundleContext, RemoveListener, void (BundleContext::*)(ListenerToken));
CONTRACT_MEMBER(BundleContext, GetDataFile, std::string (BundleContext::*)(std::string const&) const);
CONTRACT_MEMBER(BundleContext, InstallBundles,
                std::vector<Bundle> (BundleContext::*)(std::string const&, AnyMap const&));
static_assert(!std::is_copy_constructible_v<ListenerToken> && std::is_nothrow_move_constructible_v<ListenerToken> &&
              std::is_nothrow_move_assignable_v<ListenerToken> && std::is_default_constructible_v<ListenerToken>);

static_assert(std::is_base_of_v<Bundle, Framework> && !std::is_default_constructible_v<Framework>);
static_assert(std::is_copy_assignable_v<Framework> && std::is_nothrow_move_constructible_v<Framework>);
static_assert(std::is_constructible_v<Framework, Bundle> && !std::is_convertible_v<Bundle, Framework>);
CONTRACT_MEMBER(Framework, Init, void (Framework::*)());
CONTRACT_MEMBER(Framework, WaitForStop, FrameworkEvent (Framework::*)(std::chrono::milliseconds const&));
CONTRACT_MEMBER(FrameworkFactory, NewFramework, Framework (FrameworkFactory::*)());
CONTRACT_MEMBER(FrameworkFactory, NewFramework,
                Framework (FrameworkFactory::*)(FrameworkConfiguration const&, std::ostream*));
CONTRACT_MEMBER(FrameworkFactory, NewFramework,
                Framework (FrameworkFactory::*)(std::map<std::string, Any> const&, std::ostream*));

static_assert(contract::isValue<BundleEvent> && contract::isValue<FrameworkEvent>);
static_assert(std::is_constructible_v<BundleEvent, BundleEvent::Type, Bundle> &&
              std::is_constructible_v<BundleEvent, BundleEvent::Type, Bundle, Bundle>);
static_assert(BundleEvent::BUNDLE_INSTALLED == 1 && BundleEvent::BUNDLE_STARTED == 2 &&
              BundleEvent::BUNDLE_STOPPED == 4 && BundleEvent::BUNDLE_UPDATED == 8 &&
              BundleEvent::BUNDLE_UNINSTALLED == 0x10 && BundleEvent::BUNDLE_RESOLVED == 0x20 &&
              BundleEvent::BUNDLE_UNRESOLVED == 0x40 && BundleEvent::BUNDLE_STARTING == 0x80 &&
              BundleEvent::BUNDLE_STOPPING == 0x100 && BundleEvent::BUNDLE_LAZY_ACTIVATION == 0x200);
CONTRACT_MEMBER(BundleEvent, GetBundle, Bundle (BundleEvent::*)() const);
CONTRACT_MEMBER(BundleEvent, GetOrigin, Bundle (BundleEvent::*)() const);
CONTRACT_MEMBER(BundleEvent, GetType, BundleEvent::Type (BundleEvent::*)() const);
CONTRACT_MEMBER(BundleEvent, operator==, bool (BundleEvent::*)(BundleEvent const&) const);
static_assert(FrameworkEvent::FRAMEWORK_STARTED == 1 && FrameworkEvent::FRAMEWORK_ERROR == 2 &&
              FrameworkEvent::FRAMEWORK_WARNING == 0x10 && FrameworkEvent::FRAMEWORK_INFO == 0x20 &&
              FrameworkEvent::FRAMEWORK_STOPPED == 0x40 && FrameworkEvent::FRAMEWORK_STOPPED_UPDATE == 0x80 &&
              FrameworkEvent::FRAMEWORK_WAIT_TIMEDOUT == 0x200);
CONTRACT_MEMBER(FrameworkEvent, GetBundle, Bundle (FrameworkEvent::*)() const);
CONTRACT_MEMBER(FrameworkEvent, GetMessage, std::string (FrameworkEvent::*)() const);
CONTRACT_MEMBER(FrameworkEvent, GetThrowable, std::exception_ptr (FrameworkEvent::*)() const);
CONTRACT_MEMBER(FrameworkEvent, GetType, FrameworkEvent::Type (FrameworkEvent::*)() const);

static_assert(std::is_base_of_v<std::runtime_error, SecurityException> && std::is_final_v<SecurityException>);
static_assert(std::is_constructible_v<SecurityException, std::string, Bundle>);
CONTRACT_MEMBER(SecurityException, GetBundle, Bundle (SecurityException::*)() const);
static_assert(std::is_base_of_v<std::system_error, SharedLibraryException>);
static_assert(std::is_constructible_v<SharedLibraryException, std::error_code, std::string, Bundle>);
CONTRACT_MEMBER(SharedLibraryException, GetBundle, Bundle (SharedLibraryException::*)() const);
static_assert(contract::isValue<SharedLibrary>);

static_assert(contract::isValue<BundleResource> && !std::is_convertible_v<BundleResource, bool>);
CONTRACT_MEMBER(BundleResource, IsValid, bool (BundleResource::*)() const);
CONTRACT_MEMBER(BundleResource, GetName, std::string (BundleResource::*)() const);
CONTRACT_MEMBER(BundleResource, GetPath, std::string (BundleResource::*)() const);
CONTRACT_MEMBER(BundleResource, GetResourcePath, std::string (BundleResource::*)() const);
CONTRACT_MEMBER(BundleResource, GetBaseName, std::string (BundleResource::*)() const);
CONTRACT_MEMBER(BundleResource, GetCompleteBaseName, std::string (BundleResource::*)() const);
CONTRACT_MEMBER(BundleResource, GetSuffix, std::string (BundleResource::*)() const);
CONTRACT_MEMBER(BundleResource, GetCompleteSuffix, std::string (BundleResource::*)() const);
CONTRACT_MEMBER(BundleResource, IsDir, bool (BundleResource::*)() const);
CONTRACT_MEMBER(BundleResource, IsFile, bool (BundleResource::*)() const);
CONTRACT_MEMBER(BundleResource, GetChildren, std::vector<std::string> (BundleResource::*)() const);
CONTRACT_MEMBER(BundleResource, GetChildResources, std::vector<BundleResource> (BundleResource::*)() const);
CONTRACT_MEMBER(BundleResource, GetSize, int (BundleResource::*)() const);
CONTRACT_MEMBER(BundleResource, GetCompressedSize, int (BundleResource::*)() const);
CONTRACT_MEMBER(BundleResource, GetLastModified, time_t (BundleResource::*)() const);
CONTRACT_MEMBER(BundleResource, GetCrc32, uint32_t (BundleResource::*)() const);
static_assert(std::is_base_of_v<std::istream, BundleResourceStream> &&
              !std::is_copy_constructible_v<BundleResourceStream>);
static_assert(std::is_constructible_v<BundleResourceStream, BundleResource> &&
              std::is_constructible_v<BundleResourceStream, BundleResource, std::ios_base::openmode>);
