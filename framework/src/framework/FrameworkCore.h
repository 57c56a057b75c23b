#pragma once

#include "bundle/BundleRegistry.h"

#include "cppmicroservices/AnyMap.h"
#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/FrameworkEvent.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <ostream>
#include <string>
#include <thread>
#include <unordered_map>

namespace cppmicroservices::detail::core {

class BundleRecord;
class Events;
class FrameworkHold;
class ServiceRegistry;
struct BundleIdentity;

/// One framework: owns the registries, runs them up and down. The only place that knows them all.
///
/// Handles own it through a FrameworkHold; records and contexts refer to it weakly.
class FrameworkCore : public std::enable_shared_from_this<FrameworkCore> {
public:
    using Given = std::unordered_map<std::string, Any>;
    using Validation = std::function<bool(Bundle const&)>;

    /// Makes a framework in the state INSTALLED, and the hold by which it lives.
    static std::shared_ptr<FrameworkHold> make(Given const& configuration, std::ostream* logger);

    FrameworkCore(Given const& configuration, std::ostream* logger);
    FrameworkCore(FrameworkCore const&) = delete;
    FrameworkCore& operator=(FrameworkCore const&) = delete;
    ~FrameworkCore();

    /// The configuration; each run has its own, with another uuid.
    std::shared_ptr<AnyMap const> properties() const;
    int loadOptions() const { return m_loadOptions; }
    Validation const& validation() const { return m_validation; }

    Events& events() const { return *m_events; }
    BundleRegistry& bundles() { return m_bundles; }

    /// Those of the current run, or of the last one.
    std::shared_ptr<ServiceRegistry> services() const;

    std::shared_ptr<BundleRecord> const& systemBundle() const { return m_systemBundle; }
    std::shared_ptr<BundleRecord> makeRecord(BundleIdentity identity);

    // See Framework.
    void init();
    void start();
    void stop();
    FrameworkEvent waitForStop(std::chrono::milliseconds timeout);

    /// True from init() until the framework begins to stop its bundles.
    bool mayStartBundles() const { return m_mayStartBundles.load(); }

    /// The last handle is gone: stops in the calling thread, or waits for a stop under way.
    void stopQuietly() noexcept;

private:
    FrameworkCore(AnyMap properties, int loadOptions, std::ostream* logger);

    using Lock = std::unique_lock<std::mutex>;

    /// Undoes init(), with the lock held, before anything happened in the run.
    void takeBackInit(Bundle::State stateBefore);

    /// Stops in the calling thread.
    ///
    /// @throws std::runtime_error inside of an activator or a listener, for which the stop would wait
    void stopHere(char const* whyNoThread);

    /// Does the stop; m_stopping is true. When an activator ends the thread, another one does the rest.
    void runStop();
    void handStopOn();
    void retireBundles();
    void endStop();
    bool isUp() const;
    bool calledFromWithin();
    void waitForStopUnderWay(Lock& lock);
    static void joinFinished(Lock& lock, std::thread& thread);

    unsigned long const m_number; // counts the frameworks of the process
    int m_loadOptions;
    Validation m_validation;
    std::shared_ptr<Events> const m_events;
    BundleRegistry m_bundles;
    std::shared_ptr<BundleRecord> m_systemBundle; // set once, by make()
    std::weak_ptr<FrameworkHold> m_hold;          // set once, by make()
    std::atomic<bool> m_mayStartBundles{false};

    mutable std::mutex m_mutex; // guards all below; no other lock but that of a record is taken while it is held
    std::condition_variable m_changed;
    std::shared_ptr<AnyMap const> m_properties; // never null, replaced as a whole
    std::shared_ptr<ServiceRegistry> m_services;
    bool m_stopAsked = false;     // since the framework was made
    bool m_stopping = false;      // from stop() to the end of the stop
    std::thread::id m_stoppingBy; // while the stop runs
    unsigned long m_stops = 0;
    std::thread m_stopper; // the thread that stop() made, until someone joins it
};

/// What handles share: when the last one goes, the framework stops.
class FrameworkHold {
public:
    explicit FrameworkHold(std::shared_ptr<FrameworkCore> core);
    FrameworkHold(FrameworkHold const&) = delete;
    FrameworkHold& operator=(FrameworkHold const&) = delete;
    ~FrameworkHold();

    std::shared_ptr<FrameworkCore> const& core() const { return m_core; }

private:
    std::shared_ptr<FrameworkCore> m_core;
};

} // namespace cppmicroservices::detail::core
