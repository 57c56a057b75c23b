#include "contract/service/TestServices.h"
#include "contract/signatures/Signature.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/PrototypeServiceFactory.h>
#include <cppmicroservices/ServiceEvent.h>
#include <cppmicroservices/ServiceException.h>
#include <cppmicroservices/ServiceFactory.h>
#include <cppmicroservices/ServiceObjects.h>
#include <cppmicroservices/ServiceReference.h>
#include <cppmicroservices/ServiceRegistration.h>

using namespace cppmicroservices;
using contract::Named;
using contract::Plain;

static_assert(std::is_copy_constructible_v<ServiceReferenceBase> && std::is_copy_assignable_v<ServiceReferenceBase>);
static_assert(!std::is_default_constructible_v<ServiceReferenceBase> &&
              !std::is_convertible_v<ServiceReferenceBase, bool>);
static_assert(std::is_assignable_v<ServiceReferenceBase&, std::nullptr_t>);
CONTRACT_MEMBER(ServiceReferenceBase, GetProperty, Any (ServiceReferenceBase::*)(std::string const&) const);
CONTRACT_MEMBER(ServiceReferenceBase, GetPropertyKeys, void (ServiceReferenceBase::*)(std::vector<std::string>&) const);
CONTRACT_MEMBER(ServiceReferenceBase, GetPropertyKeys, std::vector<std::string> (ServiceReferenceBase::*)() const);
CONTRACT_MEMBER(ServiceReferenceBase, GetBundle, Bundle (ServiceReferenceBase::*)() const);
CONTRACT_MEMBER(ServiceReferenceBase, GetUsingBundles, std::vector<Bundle> (ServiceReferenceBase::*)() const);
CONTRACT_MEMBER(ServiceReferenceBase, GetInterfaceId, std::string (ServiceReferenceBase::*)() const);
CONTRACT_MEMBER(ServiceReferenceBase, IsConvertibleTo, bool (ServiceReferenceBase::*)(std::string const&) const);
CONTRACT_MEMBER(ServiceReferenceBase, operator<, bool (ServiceReferenceBase::*)(ServiceReferenceBase const&) const);
CONTRACT_MEMBER(ServiceReferenceBase, operator==, bool (ServiceReferenceBase::*)(ServiceReferenceBase const&) const);
static_assert(std::is_default_constructible_v<std::hash<ServiceReferenceBase>> &&
              std::is_default_constructible_v<std::hash<ServiceReference<Plain>>>);
static_assert(std::is_base_of_v<ServiceReferenceBase, ServiceReference<Plain>> &&
              std::is_same_v<ServiceReference<Plain>::ServiceType, Plain> &&
              std::is_same_v<ServiceReferenceU, ServiceReference<void>> &&
              std::is_same_v<ServiceReferenceU::ServiceType, void>);
static_assert(contract::isValue<ServiceReference<Plain>> &&
              std::is_convertible_v<ServiceReferenceBase, ServiceReference<Plain>> &&
              std::is_convertible_v<ServiceReference<Plain>, ServiceReference<Named>>);

static_assert(!std::is_default_constructible_v<ServiceRegistrationBase> &&
              std::is_nothrow_move_constructible_v<ServiceRegistrationBase> &&
              std::is_nothrow_move_assignable_v<ServiceRegistrationBase> &&
              std::is_copy_assignable_v<ServiceRegistrationBase> &&
              std::is_assignable_v<ServiceRegistrationBase&, std::nullptr_t>);
CONTRACT_MEMBER(ServiceRegistrationBase, GetReference,
                ServiceReferenceBase (ServiceRegistrationBase::*)(std::string const&) const);
CONTRACT_MEMBER(ServiceRegistrationBase, SetProperties, void (ServiceRegistrationBase::*)(ServiceProperties const&));
CONTRACT_MEMBER(ServiceRegistrationBase, SetProperties, void (ServiceRegistrationBase::*)(ServiceProperties&&));
CONTRACT_MEMBER(ServiceRegistrationBase, Unregister, void (ServiceRegistrationBase::*)());
CONTRACT_MEMBER(ServiceRegistrationBase, operator<,
                bool (ServiceRegistrationBase::*)(ServiceRegistrationBase const&) const);
CONTRACT_MEMBER(ServiceRegistrationBase, operator==,
                bool (ServiceRegistrationBase::*)(ServiceRegistrationBase const&) const);
static_assert(std::is_default_constructible_v<std::hash<ServiceRegistrationBase>>);
static_assert(contract::isValue<ServiceRegistration<Plain, Named>> && contract::isValue<ServiceRegistrationU> &&
              std::is_convertible_v<ServiceRegistrationBase, ServiceRegistrationU> &&
              !std::is_convertible_v<ServiceRegistrationBase, ServiceRegistration<Plain>> &&
              std::is_convertible_v<ServiceRegistration<Plain>, ServiceRegistrationU>);
using TwoClasses = ServiceRegistration<Plain, Named>;
static_assert(std::is_same_v<decltype(std::declval<TwoClasses>().GetReference()), ServiceReference<Plain>> &&
              std::is_same_v<decltype(std::declval<TwoClasses>().GetReference<Named>()), ServiceReference<Named>>);

static_assert(std::is_same_v<InterfaceMap, std::unordered_map<std::string, std::shared_ptr<void>>> &&
              std::is_same_v<InterfaceMapPtr, std::shared_ptr<InterfaceMap>> &&
              std::is_same_v<InterfaceMapConstPtr, std::shared_ptr<InterfaceMap const>>);
static_assert(std::is_constructible_v<MakeInterfaceMap<Plain>, std::shared_ptr<Plain>> &&
              std::is_constructible_v<MakeInterfaceMap<Plain>, std::shared_ptr<ServiceFactory>> &&
              std::is_convertible_v<MakeInterfaceMap<Plain>, InterfaceMapPtr> &&
              std::is_convertible_v<MakeInterfaceMap<Plain>, InterfaceMapConstPtr>);
static_assert(
    std::is_same_v<decltype(ExtractInterface<Plain>(InterfaceMapConstPtr())), std::shared_ptr<Plain>> &&
    std::is_same_v<decltype(ExtractInterface(InterfaceMapConstPtr(), "")), std::shared_ptr<void>> &&
    std::is_same_v<decltype(ToFactory(std::shared_ptr<PrototypeServiceFactory>())), std::shared_ptr<ServiceFactory>>);
static_assert(std::is_same_v<decltype(us_service_interface_iid<Plain>()), std::string const&>);

static_assert(std::is_abstract_v<ServiceFactory> && std::has_virtual_destructor_v<ServiceFactory> &&
              std::is_base_of_v<ServiceFactory, PrototypeServiceFactory>);
CONTRACT_MEMBER(ServiceFactory, GetService,
                InterfaceMapConstPtr (ServiceFactory::*)(Bundle const&, ServiceRegistrationBase const&));
CONTRACT_MEMBER(ServiceFactory, UngetService,
                void (ServiceFactory::*)(Bundle const&, ServiceRegistrationBase const&, InterfaceMapConstPtr const&));
static_assert(!std::is_copy_constructible_v<ServiceObjects<Plain>> &&
              std::is_move_constructible_v<ServiceObjects<Plain>> && std::is_move_assignable_v<ServiceObjects<Plain>> &&
              std::is_nothrow_move_constructible_v<ServiceObjects<void>>);
CONTRACT_MEMBER(ServiceObjects<Plain>, GetService, std::shared_ptr<Plain> (ServiceObjects<Plain>::*)() const);
CONTRACT_MEMBER(ServiceObjects<Plain>, GetServiceReference, ServiceReference<Plain> (ServiceObjects<Plain>::*)() const);
CONTRACT_MEMBER(ServiceObjects<void>, GetService, InterfaceMapConstPtr (ServiceObjects<void>::*)() const);

static_assert(contract::isValue<ServiceEvent> &&
              std::is_constructible_v<ServiceEvent, ServiceEvent::Type, ServiceReferenceBase>);
static_assert(ServiceEvent::SERVICE_REGISTERED == 1 && ServiceEvent::SERVICE_MODIFIED == 2 &&
              ServiceEvent::SERVICE_UNREGISTERING == 4 && ServiceEvent::SERVICE_MODIFIED_ENDMATCH == 8);
CONTRACT_MEMBER(ServiceEvent, GetServiceReference, ServiceReferenceU (ServiceEvent::*)() const);
CONTRACT_MEMBER(ServiceEvent, GetType, ServiceEvent::Type (ServiceEvent::*)() const);
static_assert(std::is_base_of_v<std::runtime_error, ServiceException> && ServiceException::UNSPECIFIED == 0 &&
              ServiceException::UNREGISTERED == 1 && ServiceException::FACTORY_ERROR == 2 &&
              ServiceException::FACTORY_EXCEPTION == 3 && ServiceException::REMOTE == 5 &&
              ServiceException::FACTORY_RECURSION == 6);
static_assert(std::is_convertible_v<std::string, ServiceException>);
