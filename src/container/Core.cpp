#include "container/BundleSteps.h"
#include "container/MicroServicesContainer.h"
#include "container/Record.h"
#include "platform/InstallBundles.h"
#include "platform/Utf16Path.h"

#include <cppmicroservices/AnyMap.h>

#include <cxxabi.h>
#include <exception>
#include <utility>

namespace ostrel::us_container {

using cppmicroservices::Bundle;
using cppmicroservices::BundleContext;
using ostrel::platform::Utf16Path;

MicroServicesContainer::MicroServicesContainer(BundleContext context, const Utf16Path& bundlesPath)
    : m_context(std::move(context)), m_bundlesPath(bundlesPath)
{
}

// KEPT ON PURPOSE: no delegation to the short constructor. After a delegating one the object counts as constructed, so
// an exception from a start would run the destructor, and with it unload(), on bundles that must stay started.
MicroServicesContainer::MicroServicesContainer(BundleContext context, const Utf16Path& bundlesPath,
                                               const std::vector<std::string>& bundleNames,
                                               const std::vector<std::string>& serviceNames)
    : m_context(std::move(context)), m_bundlesPath(bundlesPath)
{
    startBundles(bundleNames);
    loadServices(serviceNames);
}

MicroServicesContainer::~MicroServicesContainer()
{
    unload();
}

// UBSan: the reference to the unwinding of a thread that ends is null in libstdc++.
__attribute__((no_sanitize("null"))) void MicroServicesContainer::startBundle(const std::string& name)
{
    const std::lock_guard lock{m_mutex};
    if (name.empty()) {
        return;
    }

    const std::string location = m_startedBundles[name];
    std::vector<Bundle> bundles = m_context.GetBundles(location);
    if (bundles.empty()) {
        // The records quote the recorded location, which is empty for a new name; hosts know them that way.
        try {
            bundles = ostrel::platform::installBundles(m_context, pathOf(name));
        } catch (abi::__forced_unwind&) {
            throw; // the thread ends; whoever stops its unwinding ends the process
        } catch (const std::exception& e) {
            OSTREL_RECORD(messages::installFailed, location);
            OSTREL_RECORD(messages::installFailedCause, location, e.what());
        } catch (...) {
            OSTREL_RECORD(messages::installFailedUnknown, location);
        }
    }

    for (Bundle& bundle : bundles) {
        if (startIfValid(bundle)) {
            m_startedBundles[name] = bundle.GetLocation();
        }
    }
}

void MicroServicesContainer::startBundles(const std::vector<std::string>& names)
{
    const std::lock_guard lock{m_mutex};
    for (const std::string& name : names) {
        startBundle(name);
    }
}

void MicroServicesContainer::startAllBundles()
{
    const std::lock_guard lock{m_mutex};
    for (Bundle& bundle : ostrel::platform::installBundles(m_context, m_bundlesPath)) {
        bundle.Start();
        const std::string name = bundle.GetHeaders().AtCompoundKey("zq.component.name").ToString();
        m_startedBundles[name] = bundle.GetLocation();
    }
}

void MicroServicesContainer::stopBundle(const std::string& name)
{
    const std::lock_guard lock{m_mutex};
    if (name.empty() || !m_context) {
        return;
    }

    // KEPT ON PURPOSE: the subscript inserts `name` with an empty location when it is new. find() looks tidier, but
    // unload() visits these names and reload() starts them.
    const std::string location = m_startedBundles[name];
    for (Bundle& bundle : m_context.GetBundles(location)) {
        if (stopAndCheck(bundle, location)) {
            m_startedBundles.erase(name);
        }
    }
}

void MicroServicesContainer::stopBundles(const std::vector<std::string>& names)
{
    const std::lock_guard lock{m_mutex};
    for (const std::string& name : names) {
        stopBundle(name);
    }
}

void MicroServicesContainer::stopAllBundles()
{
    const std::lock_guard lock{m_mutex};
    stopBundles(startedBundleNames());
}

void MicroServicesContainer::unload()
{
    std::vector<std::string> bundleNames;
    std::vector<std::string> serviceNames;
    {
        const std::lock_guard lock{m_mutex};
        bundleNames = startedBundleNames();
        serviceNames = loadedServiceNames();
    }
    unloadServices(serviceNames);
    stopBundles(bundleNames);
}

void MicroServicesContainer::reload()
{
    std::vector<std::string> bundleNames;
    std::vector<std::string> serviceNames;
    {
        const std::lock_guard lock{m_mutex};
        bundleNames = startedBundleNames();
        serviceNames = loadedServiceNames();
    }
    unload();
    startBundles(bundleNames);
    loadServices(serviceNames);
}

Utf16Path MicroServicesContainer::pathOf(const std::string& name) const
{
    std::u16string path = m_bundlesPath.path();
    const std::u16string component = ostrel::platform::toUtf16(name);
    if (!component.empty()) {
        ostrel::platform::joinPath(path, component, m_bundlesPath.flag());
    }
    return Utf16Path{std::move(path), m_bundlesPath.flag()};
}

std::vector<std::string> MicroServicesContainer::startedBundleNames() const
{
    std::vector<std::string> names;
    names.reserve(m_startedBundles.size());
    for (const auto& [name, location] : m_startedBundles) {
        names.push_back(name);
    }
    return names;
}

std::vector<std::string> MicroServicesContainer::loadedServiceNames() const
{
    return {m_loadedServiceNames.begin(), m_loadedServiceNames.end()};
}

} // namespace ostrel::us_container
