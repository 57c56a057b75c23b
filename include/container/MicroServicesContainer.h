#pragma once

#include "platform/Export.h"
#include "platform/Utf16Path.h"

#include <cppmicroservices/Any.h>
#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/ServiceInterface.h>
#include <cppmicroservices/ServiceReference.h>

#include <mutex>
#include <set>
#include <sstream>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ostrel::us_container {

/// The host's conditions: attribute name to (expected text, required flag).
///
/// Names and texts are bytes, compared exactly. A required attribute must be named by a filter declaration, but naming
/// any one of several required attributes is enough; see checkFilter().
using FilterMap = std::unordered_map<std::string, std::pair<std::string, bool>>;

/// One held service: the reference through which it was obtained, and what `GetService` returned for it.
///
/// The pointer keeps the service in use by the container's bundle. It is kept as it was returned, null included.
using LoadedService = std::pair<cppmicroservices::ServiceReference<void>, cppmicroservices::InterfaceMapConstPtr>;

/// Decides whether a filter declaration admits its subject under the host's conditions.
///
/// A declaration is a list (`std::vector<cppmicroservices::Any>`) of alternatives, each a `cppmicroservices::AnyMap`
/// from attribute name to value; values are compared by their text, `Any::ToString()`. The first alternative that
/// matches admits. An alternative matches when each of its attributes that the host names too has the host's text, and
/// it names at least one required attribute, if there is any. An empty list admits nothing.
///
/// Without a declaration (an empty `Any`) the subject is admitted unless some attribute is required. A declaration of
/// any other type, a single map not in a list included, is reported and then treated as if it were absent.
///
/// A declaration that cannot be evaluated, because a text or its JSON cannot be rendered, admits: it is better to start
/// one bundle too many than to lose one to a typing error.
///
/// @param filters    the declaration; type tests are exact, nothing is converted
/// @param filterMap  the host's conditions
/// @param name       the subject's name, the beginning of each record
/// @throws  nothing for any declaration; only what the log machinery throws while the record about an earlier
///          exception is written
/// @locks   none
/// @logs    0x8 `<name>`": filters: "`<JSON>`, ": filter does match", ": filter does not match",
///          ": empty filter does match" or ": empty filter is missing required attribute";
///          0x100 ": invalid filter, skipping it.", ": unexpected type for filters: "`<JSON>` or
///          ": error checking ostrelFilters from bundle"
/// @cost    one copy of each alternative looked at; no JSON and no text of records while their severities are masked
OSTREL_EXPORT bool checkFilter(const cppmicroservices::Any& filters, const FilterMap& filterMap,
                               const std::string& name);

/// Installs, starts and stops the bundles of one directory, and loads services: obtains and holds them until unloaded.
///
/// Each container keeps its own records of what was started and loaded through it, and on destruction undoes just that.
/// Several may share one framework. The host owns the framework; the container holds a share of the context alone.
///
/// All operations may be called from any thread. One recursive mutex per container serialises them; it is held while
/// bundles and services run their own code, so that code may call back into the same container on the same thread, and
/// blocks other threads for as long as it runs. No thread is started.
///
/// Such code had better not call into another container: it would take that one's mutex second, and when code of that
/// one does the reverse on another thread, both wait for ever. The same goes for bundles whose activators start or stop
/// each other.
///
/// The order of locks is fixed: the container's mutex comes before what the framework holds while it starts or stops a
/// bundle. A host that stops the framework, or that starts or stops a bundle itself, takes the second first when the
/// bundle then calls the container, and waits for ever if another thread is in an operation that comes to that bundle.
/// So end containers before the framework, and start and stop bundles that call a container through that container
/// only.
///
/// Only failures to install a bundle, to stop one, to release a service or to read a filter declaration are caught and
/// logged. Everything else that the framework or a bundle throws goes to the caller, with the mutex released and
/// without undoing what was done before.
///
/// Some brace lists fit both the list and the FilterMap overloads, so name the type: `{}`, two texts or two strings
/// such as `{"a", "b"}`, and a single condition such as `{{"mode", {"night", true}}}` do not compile.
class OSTREL_EXPORT MicroServicesContainer {
public:
    /// Stores the context and the directory; touches neither.
    ///
    /// @param bundlesPath  the directory from which bundles are installed
    /// @locks none
    MicroServicesContainer(cppmicroservices::BundleContext context, const ostrel::platform::Utf16Path& bundlesPath);

    /// Starts the named bundles in order, then loads the named services in order.
    ///
    /// @throws what startBundle() and loadService() throw. Bundles already started then stay started, services already
    ///         obtained are released; the names after the failing one are not visited.
    /// @locks  m_mutex around each of the two loops, not between them
    MicroServicesContainer(cppmicroservices::BundleContext context, const ostrel::platform::Utf16Path& bundlesPath,
                           const std::vector<std::string>& bundleNames, const std::vector<std::string>& serviceNames);

    MicroServicesContainer(const MicroServicesContainer&) = delete;
    MicroServicesContainer& operator=(const MicroServicesContainer&) = delete;

    /// Calls unload(), then lets go of everything that is still held. Terminates the process if unload() throws.
    ~MicroServicesContainer();

    // Bundles --------------------------------------------------------------------------------------------------------

    /// Installs, if need be, and starts the bundle known by `name`.
    ///
    /// A name under which a bundle was started before finds it by its recorded location. Any other is a file name,
    /// used unchanged, in the bundle directory. All bundles of the file are started; the record keeps the location of
    /// the last. Starting an active bundle again has no effect in the framework.
    ///
    /// @param name  UTF-8; "" does nothing. Is recorded even if nothing is started: reload() then tries again.
    /// @throws  what `GetBundles`, `Start` and `GetLocation` throw; failures to install are logged instead
    /// @locks   m_mutex for the whole run, the bundle's activator included
    /// @logs    0x8 "Unable to install bundle: "`<location>` and 0x200 the same with ", cause: "`<what>`, or
    ///          0x200 with ", unknown error". The location is the recorded one, empty for a new name.
    void startBundle(const std::string& name);

    /// startBundle() for each name, in order; an exception ends the loop.
    /// @locks m_mutex for the whole run
    void startBundles(const std::vector<std::string>& names);

    /// Installs everything in the bundle directory and starts the bundles that admit the host's conditions.
    ///
    /// A bundle declares its conditions in its manifest under "zq.ostrelFilters" and must have a "zq.component.name",
    /// under which it is recorded. Bundles that are refused stay installed and are left as they are.
    ///
    /// @throws  what installBundles(), the lookup of the name, `Start` and `GetLocation` throw; bundles started before
    ///          stay started and recorded, the ones after are not looked at
    /// @locks   m_mutex for the whole run
    /// @logs    those of checkFilter(), then 0x8 "Starting bundle: "`<name>` or
    ///          "Skipping bundle due to filtering: "`<name>`
    void startBundles(const FilterMap& filterMap);

    /// Installs everything in the bundle directory, starts it, and records each bundle under its "zq.component.name".
    ///
    /// @throws  what installBundles(), `Start` and the lookup of the name throw; bundles started before stay started
    ///          and recorded. A bundle is started before its name is read.
    /// @locks   m_mutex for the whole run
    void startAllBundles();

    /// Stops the bundles at the location recorded under `name`, and forgets the name if they stopped.
    ///
    /// A name that is not recorded becomes so, with an empty location: unload() visits it, and reload() starts it.
    ///
    /// @param name  "" does nothing, nor does any name once the context is no longer valid
    /// @throws  what `GetBundles` and `GetState` throw; what `Stop` throws is logged instead
    /// @locks   m_mutex for the whole run, the bundle's activator included
    /// @logs    0x10 "Invalid bundle: "`<location>`, "Error while stoping "`<location>`": "`<what>`,
    ///          "Unknown error while stoping "`<location>`, "Did not stop "`<location>`
    void stopBundle(const std::string& name);

    /// stopBundle() for each name, in order.
    /// @locks m_mutex for the whole run
    void stopBundles(const std::vector<std::string>& names);

    /// stopBundle() for each recorded name, in no particular order.
    /// @locks m_mutex for the whole run
    void stopAllBundles();

    /// Stops and starts the bundles at a location, while keeping the loaded services consistent.
    ///
    /// First lets go of every held service of the bundle and of the bundles that use its services, directly or through
    /// others; their names stay recorded. After the restart every recorded name is loaded again. Only the bundle itself
    /// is stopped, none of its users.
    ///
    /// The same string goes to stopBundle() and startBundle() as a name. Once stopped, the bundle is looked for as for
    /// any new name: under `location` below the bundle directory. It comes back only where that path leads to its file,
    /// for instance with an empty directory path; elsewhere the failed installation is logged and it stays stopped.
    ///
    /// @param location  a location that the framework knows; any other string does nothing
    /// @throws  what the framework, stopBundle(), startBundle() and loadService() throw; services let go before the
    ///          exception stay so until they are loaded again
    /// @locks   m_mutex, but not while the collected references are dropped; the held services go under it
    /// @logs    0x200 "Error while unloading service "`<location>`, once per reference whose release throws, then the
    ///          records of stopBundle(), startBundle() and loadService()
    /// @cost    one look at each held entry and one at each service reached
    void restartBundle(const std::string& location);

    /// Locations of the started bundles, one per recorded name, in no particular order; empty ones included.
    /// @locks m_mutex for the whole run
    std::vector<std::string> listManuallyLoadedBundles() const;

    // Services -------------------------------------------------------------------------------------------------------

    /// Obtains and holds every service that `name` selects.
    ///
    /// A name that begins with "(" is a framework filter; anything else, "" included, is an interface name, and ""
    /// selects every service. References already held under the same name are skipped, so a second call adds only what
    /// is new.
    ///
    /// @param name  bytes, compared exactly; a leading blank makes a filter an interface name
    /// @throws  what `GetServiceReferences` and `GetService` throw, a malformed filter among others. Services obtained
    ///          before the exception stay held without a recorded name; unloadService() still releases them.
    /// @locks   m_mutex for the whole run, service factories included
    /// @logs    0x10 "Loaded services with name: '"`<name>`"'", once per call that held something new
    /// @cost    one framework query, then found * held-under-name comparisons; no index
    void loadService(const std::string& name);

    /// loadService() for each name, in order; an exception ends the loop.
    /// @locks m_mutex for the whole run
    void loadServices(const std::vector<std::string>& names);

    /// Loads the services of the bundles started through this container, except those that refuse the conditions.
    ///
    /// A service declares its conditions in its property "zq", a map, under "ostrelStartupLoadFilters". A service
    /// without a "zq" map is loaded unasked. Each is loaded under the name "(service.id=N)", and only after all were
    /// looked at, so services registered meanwhile are not among them. Nothing is loaded over an invalid context.
    ///
    /// @throws  what `GetBundles`, `GetRegisteredServices` and `GetProperty` throw, before anything is loaded; what
    ///          loadService() throws, after the services before were loaded
    /// @locks   m_mutex for the whole run
    /// @logs    those of checkFilter(), then 0x8 "Skipping service: "`<id>` if refused, and those of loadService()
    void loadServices(const FilterMap& filterMap);

    /// As loadServices(FilterMap), but asks no filter.
    /// @locks m_mutex for the whole run
    void loadAllServices();

    /// Lets go of everything held under exactly `name`. A name that is not loaded is no error.
    ///
    /// @throws  nothing but what allocation throws; what a release throws is logged instead
    /// @locks   m_mutex while the records are edited. It is released before the services are let go, so that their
    ///          destructors run without it.
    /// @logs    0x200 "Error while unloading service "`<name>`, once per release that throws
    void unloadService(const std::string& name);

    /// unloadService() for each name, in order.
    /// @locks none itself; other threads may run between two names
    void unloadServices(const std::vector<std::string>& names);

    /// unloadService() for each recorded name, ascending.
    /// @locks m_mutex while the names are copied
    void unloadAllServices();

    /// The "objectclass" text of each held service, one per entry, in no particular order.
    /// @locks m_mutex for the whole run
    std::vector<std::string> listManuallyLoadedServices() const;

    // Everything -----------------------------------------------------------------------------------------------------

    /// Unloads the recorded services, ascending by name, then stops the recorded bundles.
    ///
    /// @throws  what unloadService() and stopBundle() throw; the steps after are skipped
    /// @locks   m_mutex while the names are copied and while bundles are stopped
    void unload();

    /// unload(), then starts the same bundle names and loads the same service names again.
    ///
    /// Bundles that stopped are installed from the directory under their recorded name again. A bundle started from
    /// the whole directory is recorded under its component name, so it comes back only if its file has that name.
    ///
    /// @throws  what unload(), startBundle() and loadService() throw; the steps after are skipped
    /// @locks   m_mutex for each step, not between them
    void reload();

    // Reports --------------------------------------------------------------------------------------------------------

    /// The report on the started bundles, then the one on their services and on what was loaded.
    ///
    /// @throws  what the framework throws; the text is then lost
    /// @locks   none itself; each half holds m_mutex, so the halves may disagree if another thread acts in between
    std::string getMicroServicesString();

    /// The started bundles with id, state and manifest headers.
    /// @throws  what the framework throws; what was inserted before stays in the stream
    /// @locks   m_mutex for the whole run
    void printAllBundles(std::stringstream& stream);

    /// The held services' interface names, then all services of each started bundle.
    /// @throws  what the framework throws; what was inserted before stays in the stream
    /// @locks   m_mutex for the whole run
    void printAllServices(std::stringstream& stream);

    /// One block per service that the bundle registers.
    /// @throws  what the framework throws; what was inserted before stays in the stream
    /// @locks   m_mutex for the whole run
    void printBundleServices(std::stringstream& stream, cppmicroservices::Bundle bundle);

    /// Id, classes, properties and users of one service.
    ///
    /// The service is obtained through the container's context while its block is written, so the context's bundle is
    /// among the users, and a service factory may run.
    ///
    /// @throws  what the framework throws; what was inserted before stays in the stream
    /// @locks   m_mutex for the whole run
    void printService(std::stringstream& stream, cppmicroservices::ServiceReference<void>& reference);

    // Console reports: on everything that the framework has, line by line to std::cout, each line flushed. Layouts are
    // their own, unlike those above. Column widths go with the fill and alignment that std::cout has.
    // The lock orders this container's operations alone: std::cout belongs to the whole process, so lines of other
    // threads may come between, and column widths may go astray while another container prints.
    // What the framework throws goes to the caller; lines already printed stay printed.

    /// A table of all installed bundles.
    /// @locks m_mutex for the whole run
    void printAllBundles() const;

    /// State, services in use and manifest headers of the bundles at a location.
    /// @locks m_mutex for the whole run
    void printBundleProperties(const std::string& location) const;

    /// Id, users and properties of one service. Unlike the stream form it does not obtain the service.
    /// @locks m_mutex for the whole run
    void printService(cppmicroservices::ServiceReference<void>& reference) const;

    /// Classes and users of the services of the bundles at a location.
    /// @param indent  spaces before each line
    /// @locks m_mutex for the whole run
    void printBundleServices(const std::string& location, unsigned int indent) const;

    /// Classes and users of the services of one bundle.
    /// @param indent  spaces before each line
    /// @locks m_mutex for the whole run
    void printBundleServices(cppmicroservices::Bundle bundle, unsigned int indent) const;

    /// The recorded service names, then the services of all installed bundles.
    /// @locks m_mutex for the whole run
    void printAllServices() const;

    /// printService() for each service of an interface.
    /// @locks m_mutex for the whole run
    void printServiceProperties(const std::string& interfaceName); // KEPT ON PURPOSE: not const

private:
    ostrel::platform::Utf16Path pathOf(const std::string& name) const;
    bool isHeld(const std::string& name, const cppmicroservices::ServiceReferenceBase& reference) const;
    void releaseHeld(const std::vector<cppmicroservices::ServiceReference<void>>& references);
    std::vector<std::string> startedBundleNames() const;
    std::vector<std::string> loadedServiceNames() const;

    // Destroyed from the last to the first: services go before the context through which they were obtained.
    mutable std::recursive_mutex m_mutex;
    cppmicroservices::BundleContext m_context;
    ostrel::platform::Utf16Path m_bundlesPath;
    std::unordered_map<std::string, std::string> m_startedBundles; ///< name to location, which may be empty
    std::set<std::string> m_loadedServiceNames;
    // KEPT ON PURPOSE: always empty and never used; the class keeps its shape.
    std::vector<std::string> m_spareNames;
    std::unordered_multimap<std::string, LoadedService> m_loadedServices;
};

} // namespace ostrel::us_container
