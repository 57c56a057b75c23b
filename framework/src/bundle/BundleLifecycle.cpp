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

#include <exception>
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
    if (auto const thrown = caughtFrom([&] { isValid = valid(handle); })) {
        core.events().publish(FrameworkEvent::FRAMEWORK_WARNING, bundle,
                              "The bundle validation function threw an exception", thrown);
        throw SecurityException(reasonOf(thrown), handle);
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

/// @throws SharedLibraryException, as it is, when the library could not be loaded
/// @throws std::runtime_error for all else
[[noreturn]] void failStart(BundleRecord const& bundle, std::exception_ptr const& thrown, bool loaded)
{
    try {
        std::rethrow_exception(thrown);
    } catch (SharedLibraryException const&) {
        if (!loaded) {
            throw;
        }
    } catch (...) {
        // Told below, and so is a library that was built for the other framework.
    }
    throw std::runtime_error("Bundle " + bundle.name() + " (location= " + bundle.location() +
                             ") start failed: " + reasonOf(thrown));
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
    bool loaded = false;
    auto const abandon = [&] { abandonStart(core, bundle, *context); };
    auto const thrown = caughtFrom(
        [&] {
            core.events().publish(BundleEvent::BUNDLE_STARTING, bundle);
            if (hasActivator) {
                bundle->activation().load(*bundle, core.loadOptions(), bundle);
                loaded = true;
                bundle->activation().start(*bundle, context);
            }
        },
        abandon);
    if (thrown) {
        abandon();
        failStart(*bundle, thrown, loaded);
    }
    bundle->setState(Bundle::STATE_ACTIVE);
    core.events().publish(BundleEvent::BUNDLE_STARTED, bundle);
}

/// Stops an active bundle. What its activator threw is thrown at the end.
void stopHeld(FrameworkCore& core, Record const& bundle)
{
    auto const context = bundle->context();
    auto const clean = [&] { cleanUp(core, bundle, *context); };
    auto const destroy = [&] {
        auto thrown = caughtFrom([&] { bundle->activation().destroy(); }, clean);
        clean();
        return thrown;
    };
    bundle->setState(Bundle::STATE_STOPPING);
    auto const fromStop = caughtFrom(
        [&] {
            core.events().publish(BundleEvent::BUNDLE_STOPPING, bundle);
            bundle->activation().stop(context);
        },
        destroy);
    auto const fromDestroying = destroy();
    if (auto const& thrown = fromStop ? fromStop : fromDestroying) {
        throw std::runtime_error(bundle->text() + ", BundleActivator::Stop() failed: " + reasonOf(thrown));
    }
}

/// Stops the bundle if it is active; a failure is reported as an event instead of thrown.
void stopAnyway(FrameworkCore& core, Record const& bundle)
{
    if (bundle->state() != Bundle::STATE_ACTIVE) {
        return;
    }
    if (auto const thrown = caughtFrom([&] { stopHeld(core, bundle); })) {
        core.events().publish(FrameworkEvent::FRAMEWORK_ERROR, bundle, "", thrown);
    }
}

/// Destroys the activator of a failed start; a failure is reported as an event.
void forgetFailedStart(FrameworkCore& core, Record const& bundle)
{
    if (auto const thrown = caughtFrom([&] { bundle->activation().destroyPutAside(); })) {
        core.events().publish(FrameworkEvent::FRAMEWORK_ERROR, bundle, "", thrown);
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
    auto const folder = dataFolder(*core.properties(), bundle->id()); // while nothing is done that lasts
    stopAnyway(core, bundle);
    forgetFailedStart(core, bundle);
    bundle->setState(Bundle::STATE_INSTALLED);
    core.events().publish(BundleEvent::BUNDLE_UNRESOLVED, bundle);
    core.bundles().remove(*bundle);
    if (!folder.empty()) {
        if (auto const failed = removeDataFolder(folder)) {
            core.events().note([&] {
                return "The folder " + folder + " for the data of " + bundle->text() +
                       " was not removed: " + failed.message();
            });
        }
    }
    bundle->setState(Bundle::STATE_UNINSTALLED);
    core.events().publish(BundleEvent::BUNDLE_UNINSTALLED, bundle);
}

void retireBundle(FrameworkCore& core, Record const& bundle)
{
    struct Retirement {
        BundleRecord& bundle;

        ~Retirement()
        {
            bundle.detach();
            if (bundle.state() != Bundle::STATE_UNINSTALLED) {
                bundle.setState(Bundle::STATE_INSTALLED);
            }
        }
    };
    auto const thrown = caughtFrom([&] {
        ForeignCodeScope const lifecycle(takeLifecycle(*bundle, "the framework's Stop()"));
        Retirement const atEnd{*bundle}; // also when the activator ends the thread
        stopAnyway(core, bundle);
        forgetFailedStart(core, bundle);
    });
    if (thrown) {
        core.events().publish(FrameworkEvent::FRAMEWORK_ERROR, bundle, "", thrown);
    }
}

} // namespace cppmicroservices::detail::core
