#include "bundle/BundleLifecycle.h"

#include "bundle/BundleContextPrivate.h"
#include "bundle/BundleRecord.h"
#include "bundle/DataFolder.h"
#include "bundle/Manifest.h"
#include "event/Events.h"
#include "framework/FrameworkCore.h"
#include "framework/HandleAccess.h"
#include "service/ServiceRegistry.h"
#include "value/Reason.h"

#include "cppmicroservices/SecurityException.h"
#include "cppmicroservices/SharedLibraryException.h"

#include <optional>
#include <stdexcept>
#include <string>

namespace cppmicroservices::detail::core {

namespace {

using Record = std::shared_ptr<BundleRecord>;

/// @throws std::runtime_error when waiting for the lock could never end
ForeignCodeLock& takeLifecycle(BundleRecord& bundle, char const* operation)
{
    if (bundle.lifecycleLock().take() == ForeignCodeLock::Outcome::wouldNeverEnd) {
        throw std::runtime_error(bundle.text() + ": " + operation +
                                 " was called from inside the bundle's own activator, or from one that the thread "
                                 "which is starting or stopping the bundle waits for; it could never end.");
    }
    return bundle.lifecycleLock();
}

/// Asks the framework's validation function, if there is one.
void validate(FrameworkCore& core, Record const& bundle)
{
    auto const& valid = core.validation();
    if (!valid) {
        return;
    }
    auto const handle = HandleAccess::bundle(bundle);
    bool isValid = false;
    try {
        isValid = valid(handle);
    } catch (...) {
        auto const reason = currentReason();
        core.events().publish(FrameworkEvent::FRAMEWORK_WARNING, bundle,
                              "The bundle validation function threw an exception", std::current_exception());
        throw SecurityException(reason, handle);
    }
    if (!isValid) {
        throw SecurityException(bundle->text() + " failed bundle validation.", handle);
    }
}

/// What is done at the end of each stop and each failed start. The context is invalid afterwards.
void cleanUp(FrameworkCore& core, Record const& bundle, BundleContextPrivate& context)
{
    core.events().listeners().removeAllOf(context);
    context.services()->endRegistrations(context);
    context.services()->endUses(context);
    core.events().listeners().end(context); // also of those that were added meanwhile
    bundle->activation().emptySlot();
    context.invalidate();
    bundle->setContext(nullptr);
    bundle->setState(Bundle::STATE_RESOLVED);
    core.events().publish(BundleEvent::BUNDLE_STOPPED, bundle);
}

void abandonStart(FrameworkCore& core, Record const& bundle, BundleContextPrivate& context)
{
    bundle->setState(Bundle::STATE_STOPPING);
    core.events().publish(BundleEvent::BUNDLE_STOPPING, bundle);
    bundle->activation().putAside();
    cleanUp(core, bundle, context);
}

void startHeld(FrameworkCore& core, Record const& bundle)
{
    if (bundle->state() == Bundle::STATE_INSTALLED) {
        bundle->setState(Bundle::STATE_RESOLVED);
        core.events().publish(BundleEvent::BUNDLE_RESOLVED, bundle);
    }
    bool const hasActivator = asksForActivator(bundle->headers());
    if (hasActivator) {
        validate(core, bundle);
    }
    auto const context = BundleContextPrivate::make(bundle, core.services());
    bundle->setContext(context);
    bundle->setState(Bundle::STATE_STARTING);
    core.events().publish(BundleEvent::BUNDLE_STARTING, bundle);
    if (hasActivator) {
        auto& activation = bundle->activation();
        std::optional<std::string> failure;
        try {
            activation.load(*bundle, core.loadOptions(), bundle);
        } catch (SharedLibraryException const&) {
            abandonStart(core, bundle, *context);
            throw;
        } catch (...) {
            failure = currentReason();
        }
        if (!failure) {
            try {
                activation.start(*bundle, context);
            } catch (...) {
                failure = currentReason();
            }
        }
        if (failure) {
            abandonStart(core, bundle, *context);
            throw std::runtime_error("Bundle " + bundle->name() + " (location= " + bundle->location() +
                                     ") start failed: " + *failure);
        }
    }
    bundle->setState(Bundle::STATE_ACTIVE);
    core.events().publish(BundleEvent::BUNDLE_STARTED, bundle);
}

/// Stops an active bundle. What its activator threw is thrown at the end.
void stopHeld(FrameworkCore& core, Record const& bundle)
{
    auto const context = bundle->context();
    bundle->setState(Bundle::STATE_STOPPING);
    core.events().publish(BundleEvent::BUNDLE_STOPPING, bundle);
    std::optional<std::string> failure;
    try {
        bundle->activation().stop(context);
    } catch (...) {
        failure = currentReason();
    }
    try {
        bundle->activation().destroy();
    } catch (...) {
        if (!failure) {
            failure = currentReason();
        }
    }
    cleanUp(core, bundle, *context);
    if (failure) {
        throw std::runtime_error(bundle->text() + ", BundleActivator::Stop() failed: " + *failure);
    }
}

/// Stops the bundle if it is active; a failure is reported as an event instead of thrown.
void stopAnyway(FrameworkCore& core, Record const& bundle)
{
    if (bundle->state() != Bundle::STATE_ACTIVE) {
        return;
    }
    try {
        stopHeld(core, bundle);
    } catch (...) {
        core.events().publish(FrameworkEvent::FRAMEWORK_ERROR, bundle, std::string(), std::current_exception());
    }
}

/// Destroys the activator of a failed start; a failure is reported as an event.
void forgetFailedStart(FrameworkCore& core, Record const& bundle)
{
    try {
        bundle->activation().destroyPutAside();
    } catch (...) {
        core.events().publish(FrameworkEvent::FRAMEWORK_ERROR, bundle, std::string(), std::current_exception());
    }
}

} // namespace

void startBundle(FrameworkCore& core, Record const& bundle)
{
    ForeignCodeScope const lifecycle(takeLifecycle(*bundle, "Start()"));
    if (bundle->state() == Bundle::STATE_UNINSTALLED) {
        throw std::logic_error(bundle->text() + " is uninstalled");
    }
    if (bundle->state() == Bundle::STATE_ACTIVE) {
        return;
    }
    if (bundle->isDetached() || !core.mayStartBundles()) {
        throw std::runtime_error(bundle->text() + " belongs to a stopped framework");
    }
    startHeld(core, bundle);
}

void stopBundle(FrameworkCore& core, Record const& bundle)
{
    ForeignCodeScope const lifecycle(takeLifecycle(*bundle, "Stop()"));
    if (bundle->state() == Bundle::STATE_UNINSTALLED) {
        throw std::logic_error(bundle->text() + " is uninstalled");
    }
    if (bundle->state() == Bundle::STATE_ACTIVE) {
        stopHeld(core, bundle);
    }
}

void uninstallBundle(FrameworkCore& core, Record const& bundle)
{
    ForeignCodeScope const lifecycle(takeLifecycle(*bundle, "Uninstall()"));
    if (bundle->state() == Bundle::STATE_UNINSTALLED) {
        throw std::logic_error(bundle->text() + " is in BUNDLE_UNINSTALLED state");
    }
    if (bundle->isDetached()) {
        return;
    }
    stopAnyway(core, bundle);
    forgetFailedStart(core, bundle);
    bundle->setState(Bundle::STATE_INSTALLED);
    core.events().publish(BundleEvent::BUNDLE_UNRESOLVED, bundle);
    core.bundles().remove(*bundle);
    if (auto const folder = dataFolder(*core.properties(), bundle->id()); !folder.empty()) {
        removeDataFolder(folder);
    }
    bundle->setState(Bundle::STATE_UNINSTALLED);
    core.events().publish(BundleEvent::BUNDLE_UNINSTALLED, bundle);
}

void retireBundle(FrameworkCore& core, Record const& bundle) noexcept
{
    try {
        ForeignCodeScope const lifecycle(takeLifecycle(*bundle, "the framework's Stop()"));
        stopAnyway(core, bundle);
        forgetFailedStart(core, bundle);
        bundle->detach();
        if (bundle->state() != Bundle::STATE_UNINSTALLED) {
            bundle->setState(Bundle::STATE_INSTALLED);
        }
    } catch (...) {
        core.events().publish(FrameworkEvent::FRAMEWORK_ERROR, bundle, std::string(), std::current_exception());
    }
}

} // namespace cppmicroservices::detail::core
