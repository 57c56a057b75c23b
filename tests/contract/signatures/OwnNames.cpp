// A program that makes all names of the framework its own keeps those that it has already.
#include <cppmicroservices/Any.h>
#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/BundleEvent.h>
#include <cppmicroservices/BundleResource.h>
#include <cppmicroservices/BundleResourceStream.h>
#include <cppmicroservices/BundleTracker.h>
#include <cppmicroservices/BundleVersion.h>
#include <cppmicroservices/Constants.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>
#include <cppmicroservices/LDAPFilter.h>
#include <cppmicroservices/LDAPProp.h>
#include <cppmicroservices/ListenerFunctors.h>
#include <cppmicroservices/PrototypeServiceFactory.h>
#include <cppmicroservices/SecurityException.h>
#include <cppmicroservices/ServiceEvent.h>
#include <cppmicroservices/ServiceObjects.h>
#include <cppmicroservices/ServiceTracker.h>
#include <cppmicroservices/SharedLibrary.h>
#include <cppmicroservices/SharedLibraryException.h>

namespace core {
struct Engine {};
} // namespace core

namespace ldap {
struct Connection {};
} // namespace ldap

namespace bundle {
struct Shelf {};
} // namespace bundle

namespace event {
struct Queue {};
} // namespace event

namespace library {
struct Book {};
} // namespace library

namespace resource {
struct Picture {};
} // namespace resource

namespace service {
struct Desk {};
} // namespace service

namespace tracker {
struct Trail {};
} // namespace tracker

using namespace cppmicroservices;

struct Everything {
    core::Engine engine;
    ldap::Connection connection;
    bundle::Shelf shelf;
    event::Queue queue;
    library::Book book;
    resource::Picture picture;
    service::Desk desk;
    tracker::Trail trail;
    Any value;
};
