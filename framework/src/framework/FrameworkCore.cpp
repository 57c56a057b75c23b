#include "framework/FrameworkCore.h"

#include "bundle/BundleContextPrivate.h"
#include "bundle/BundleLifecycle.h"
#include "bundle/BundleRecord.h"
#include "event/Events.h"
#include "framework/Configuration.h"
#include "framework/HandleAccess.h"
#include "service/ServiceRegistry.h"
#include "value/Reason.h"

#include "cppmicroservices/Constants.h"

#include <exception>
#include <new>
#include <stdexcept>
#include <utility>

namespace cppmicroservices::detail::core {

namespace {

std::atomic<unsigned long> frameworksMade{0};

bool isOutOfMemory(std::exception_ptr const& exception)
{
    try {
        std::rethrow_exception(exception);
    } catch (std::bad_alloc const&) {
        return true;
    } catch (...) {
        return false;
    }
}

} // namespace

std::shared_ptr<FrameworkHold> FrameworkCore::make(Given const& configuration, std::ostream* logger)
{
    auto const core = std::make_shared<FrameworkCore>(configuration, logger);
    auto hold = std::make_shared<FrameworkHold>(core);
    core->m_hold = hold;
    core->m_systemBundle = core->makeRecord(systemBundleIdentity());
    return hold;
}

FrameworkCore::FrameworkCore(Given const& configuration, std::ostream* logger)
    : FrameworkCore(completeConfiguration(configuration), loadOptionsIn(configuration), logger)
{
}

FrameworkCore::FrameworkCore(AnyMap properties, int loadOptions, std::ostream* logger)
    : m_number(++frameworksMade),
      m_loadOptions(loadOptions),
      m_validation(validationIn(properties)),
      m_events(std::make_shared<Events>(logsIn(properties) ? logger : nullptr)),
      m_properties(std::make_shared<AnyMap const>(std::move(properties))),
      m_services(std::make_shared<ServiceRegistry>(m_events))
{
    m_events->note("framework made");
    if (!loadOptionsAreUsable(*m_properties)) {
        m_events->note([this] {
            return "The property " + Constants::LIBRARY_LOAD_OPTIONS + " is no int; " + std::to_string(m_loadOptions) +
                   " is used instead.";
        });
    }
}

FrameworkCore::~FrameworkCore()
{
    // Only reached while the thread runs when that thread lets go of the framework last.
    if (m_stopper.joinable()) {
        m_stopper.detach();
    }
}

std::shared_ptr<AnyMap const> FrameworkCore::properties() const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_properties;
}

std::shared_ptr<ServiceRegistry> FrameworkCore::services() const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_services;
}

std::shared_ptr<BundleRecord> FrameworkCore::makeRecord(BundleIdentity identity)
{
    identity.framework = m_number;
    return std::make_shared<BundleRecord>(std::move(identity), weak_from_this(), m_hold);
}

bool FrameworkCore::isUp() const
{
    auto const state = m_systemBundle->state();
    return state == Bundle::STATE_STARTING || state == Bundle::STATE_ACTIVE;
}

void FrameworkCore::joinFinished(Lock& lock, std::thread& thread)
{
    if (thread.joinable()) {
        std::thread finished = std::move(thread);
        lock.unlock();
        finished.join();
        lock.lock();
    }
}

void FrameworkCore::waitForStopUnderWay(Lock& lock)
{
    if (m_stopping) {
        bool within = m_stoppingBy == std::this_thread::get_id();
        if (!within) {
            // The stop may wait for what this thread does inside an activator.
            lock.unlock();
            within = calledFromWithin();
            lock.lock();
        }
        if (within && m_stopping) {
            throw std::runtime_error("The framework cannot be started from inside its own stop.");
        }
    }
    m_changed.wait(lock, [this] { return !m_stopping; });
    joinFinished(lock, m_stopper);
}

void FrameworkCore::init()
{
    // Copied and, below, dropped without the lock: the values are foreign code.
    auto const former = properties();
    checkValidation(*former);
    auto propertiesOfRun = std::make_shared<AnyMap const>(withNewUuid(*former));
    BundleRegistry::Records program;
    std::exception_ptr failure;
    {
        Lock lock(m_mutex);
        waitForStopUnderWay(lock);
        if (isUp()) {
            return;
        }
        auto const stateBefore = m_systemBundle->state();
        auto services = std::make_shared<ServiceRegistry>(m_events);
        auto context = BundleContextPrivate::make(m_systemBundle, services);
        m_bundles.open(m_systemBundle);
        m_properties.swap(propertiesOfRun);
        m_services.swap(services);
        m_systemBundle->setContext(std::move(context));
        m_mayStartBundles = true;
        m_systemBundle->setState(Bundle::STATE_STARTING);
        // On failure the framework is up all the same, as after any failed installation; but what memory failed for
        // is to be tried again.
        failure = caughtFrom([&] { program = m_bundles.addProgram(*this); });
        if (failure && isOutOfMemory(failure)) {
            takeBackInit(stateBefore);
            std::rethrow_exception(failure);
        }
    }
    // No event: listeners come only with the context.
    m_events->note([this] { return "bundle STARTING " + m_systemBundle->text(); });
    for (auto const& bundle : program) {
        m_events->publish(BundleEvent::BUNDLE_INSTALLED, bundle);
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

void FrameworkCore::takeBackInit(Bundle::State stateBefore)
{
    m_mayStartBundles = false;
    m_bundles.close();
    m_systemBundle->context()->invalidate();
    m_systemBundle->setContext(nullptr);
    m_systemBundle->setState(stateBefore);
}

void FrameworkCore::start()
{
    init();
    {
        Lock const lock(m_mutex);
        if (m_systemBundle->state() != Bundle::STATE_STARTING) {
            return;
        }
        m_systemBundle->setState(Bundle::STATE_ACTIVE);
    }
    m_events->note([this] { return "bundle STARTED " + m_systemBundle->text(); }); // the event is a framework event
    m_events->publish(FrameworkEvent::FRAMEWORK_STARTED, m_systemBundle, "");
}

void FrameworkCore::stop()
{
    Lock lock(m_mutex);
    m_stopAsked = true;
    if (m_stopping || !isUp()) {
        return;
    }
    joinFinished(lock, m_stopper);
    if (m_stopping || !isUp()) {
        return; // another thread was faster
    }
    try {
        m_stopper = std::thread([core = shared_from_this()] { core->runStop(); });
        m_stopping = true; // the thread waits for the lock before it looks at anything
    } catch (std::exception const& e) {
        lock.unlock();
        stopHere(e.what());
    }
}

void FrameworkCore::stopHere(char const* whyNoThread)
{
    if (calledFromWithin() || m_events->callsFromThisThread()) {
        throw std::runtime_error(
            "The framework cannot be stopped from inside an activator or a listener of its own bundles, as no thread "
            "can be made that would do it (" +
            std::string(whyNoThread) + "); call Stop() again later, or from elsewhere.");
    }
    {
        Lock const lock(m_mutex);
        if (m_stopping || !isUp()) {
            return; // another thread was faster
        }
        m_stopping = true;
    }
    runStop();
}

void FrameworkCore::runStop()
{
    bool begins = false;
    {
        Lock const lock(m_mutex);
        m_stoppingBy = std::this_thread::get_id();
        m_mayStartBundles = false;
        begins = m_systemBundle->state() != Bundle::STATE_STOPPING;
        m_systemBundle->setState(Bundle::STATE_STOPPING);
    }
    (void)caughtFrom(
        [&] {
            if (begins) {
                m_events->publish(BundleEvent::BUNDLE_STOPPING, m_systemBundle);
            }
            retireBundles();
        },
        [this] { handStopOn(); });
    endStop();
}

void FrameworkCore::handStopOn()
{
    try {
        Lock const lock(m_mutex);
        std::thread next([core = shared_from_this()] { core->runStop(); });
        if (m_stopper.joinable()) {
            m_stopper.detach(); // the one that ends
        }
        m_stopper = std::move(next);
    } catch (std::exception const&) {
        runStop(); // no thread can be made, so this one goes on before it ends
    }
}

void FrameworkCore::retireBundles()
{
    // One after the other instead of a list of all, which needs memory.
    for (auto bundle = m_bundles.before(nullptr); bundle; bundle = m_bundles.before(bundle.get())) {
        if (!bundle->isSystemBundle()) {
            retireBundle(*this, bundle);
        }
    }
}

void FrameworkCore::endStop()
{
    auto const left = m_bundles.close(); // what was installed meanwhile; it cannot have been started
    for (auto const& entry : left) {
        entry.second->detach();
    }
    auto const services = this->services();
    if (auto const context = m_systemBundle->context()) {
        services->endUses(*context);
        m_events->listeners().end(*context);
        context->invalidate();
    }
    m_systemBundle->setContext(nullptr);
    services->close();

    Lock const lock(m_mutex);
    m_systemBundle->setState(Bundle::STATE_RESOLVED);
    m_stopping = false;
    m_stoppingBy = std::thread::id();
    ++m_stops;
    m_changed.notify_all();
}

bool FrameworkCore::calledFromWithin()
{
    for (auto bundle = m_bundles.before(nullptr); bundle; bundle = m_bundles.before(bundle.get())) {
        if (bundle->lifecycleLock().heldByThisThread()) {
            return true;
        }
    }
    return false;
}

FrameworkEvent FrameworkCore::waitForStop(std::chrono::milliseconds timeout)
{
    auto const event = [this](FrameworkEvent::Type type) {
        return FrameworkEvent(type, HandleAccess::bundle(m_systemBundle), std::string());
    };
    // A longer time would overflow the clock; nobody sees it end.
    constexpr auto longest = std::chrono::hours(24 * 365 * 100);
    bool const unlimited = timeout == std::chrono::milliseconds::zero() || timeout > longest;
    bool const within = unlimited && calledFromWithin();

    Lock lock(m_mutex);
    if (m_systemBundle->state() == Bundle::STATE_INSTALLED && !m_stopAsked) {
        return event(FrameworkEvent::FRAMEWORK_ERROR);
    }
    auto const stopsBefore = m_stops;
    auto const stopped = [this, stopsBefore] { return m_stops != stopsBefore || (!m_stopping && !isUp()); };
    if (unlimited && !stopped() && (within || m_stoppingBy == std::this_thread::get_id())) {
        throw std::runtime_error("WaitForStop() without a time limit was called from inside an activator of one of "
                                 "the framework's own bundles; it could never end.");
    }
    if (unlimited) {
        m_changed.wait(lock, stopped);
    } else if (!m_changed.wait_for(lock, timeout, stopped)) {
        return event(FrameworkEvent::FRAMEWORK_WAIT_TIMEDOUT);
    }
    if (!m_stopping) {
        joinFinished(lock, m_stopper);
    }
    return event(FrameworkEvent::FRAMEWORK_STOPPED);
}

void FrameworkCore::stopQuietly() noexcept
{
    if (!m_systemBundle) {
        return; // make() did not get so far
    }
    try {
        Lock lock(m_mutex);
        if (m_stopping && m_stoppingBy == std::this_thread::get_id()) {
            return; // the stop itself held the last handle for a moment
        }
        if (m_stopping) {
            m_changed.wait(lock, [this] { return !m_stopping; });
        } else if (isUp()) {
            m_stopping = true;
            lock.unlock();
            runStop();
            lock.lock();
        }
        joinFinished(lock, m_stopper);
    } catch (std::exception const& e) {
        m_events->note([&e] { return std::string("The framework could not be stopped quietly: ") + e.what(); });
    }
}

FrameworkHold::FrameworkHold(std::shared_ptr<FrameworkCore> core) : m_core(std::move(core)) {}

FrameworkHold::~FrameworkHold()
{
    m_core->stopQuietly();
}

} // namespace cppmicroservices::detail::core
