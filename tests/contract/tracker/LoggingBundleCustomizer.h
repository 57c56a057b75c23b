#pragma once

#include "contract/tracker/TrackerFixture.h"

#include <cppmicroservices/BundleEvent.h>
#include <cppmicroservices/BundleTracker.h>

#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

namespace contract {

/// Logs its calls for one bundle, with the bundle's state and the event's type, then acts.
template <class T = cppmicroservices::Bundle>
class LoggingBundleCustomizer : public cppmicroservices::BundleTrackerCustomizer<T> {
public:
    using Bundle = cppmicroservices::Bundle;
    using BundleEvent = cppmicroservices::BundleEvent;
    using Make = std::function<std::optional<T>(Bundle const&)>;
    using React = std::function<void(Bundle const&, BundleEvent const&)>;

    LoggingBundleCustomizer(std::string name, Make theMake) : make(std::move(theMake)), m_name(std::move(name)) {}

    std::optional<T> AddingBundle(Bundle const& bundle, BundleEvent const& event) override
    {
        note("adding", bundle, event);
        return make(bundle);
    }

    void ModifiedBundle(Bundle const& bundle, BundleEvent const& event, T const&) override
    {
        note("modified", bundle, event);
        if (onModified) {
            onModified(bundle, event);
        }
    }

    void RemovedBundle(Bundle const& bundle, BundleEvent const& event, T const&) override
    {
        note("removed", bundle, event);
        if (onRemoved) {
            onRemoved(bundle, event);
        }
    }

    Make make;
    React onModified;
    React onRemoved;
    Log log;

private:
    void note(std::string const& what, Bundle const& bundle, BundleEvent const& event)
    {
        if (bundle.GetSymbolicName() != m_name) {
            return;
        }
        std::ostringstream line;
        line << what << ' ' << bundle.GetState() << ' ';
        event ? line << event.GetType() : line << event;
        log.add(line.str());
    }

    std::string const m_name;
};

} // namespace contract
