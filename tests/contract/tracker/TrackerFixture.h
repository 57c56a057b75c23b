#pragma once

#include "contract/StartedFramework.h"

#include <cppmicroservices/Constants.h>
#include <cppmicroservices/ServiceTracker.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace contract {

struct Numbered {
    explicit Numbered(int theNumber = 0) : number(theNumber) {}
    virtual ~Numbered() = default;
    int const number;
};

struct Other {
    virtual ~Other() = default;
};

struct NumberedAndOther : Numbered, Other {
    using Numbered::Numbered;
};

struct Label {
    std::string text;
};

inline cppmicroservices::ServiceProperties ranking(int value)
{
    return {{cppmicroservices::Constants::SERVICE_RANKING, cppmicroservices::Any(value)}};
}

inline cppmicroservices::ServiceProperties colour(std::string const& value)
{
    return {{"colour", cppmicroservices::Any(value)}};
}

/// What a customizer saw, from whatever thread.
class Log {
public:
    void add(std::string line)
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        m_lines.push_back(std::move(line));
    }

    std::vector<std::string> take()
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        return std::exchange(m_lines, {});
    }

private:
    std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

/// Logs its calls by the kind and "name" property of the service, then acts.
template <class S, class T = S>
class LoggingCustomizer : public cppmicroservices::ServiceTrackerCustomizer<S, T> {
public:
    using Reference = cppmicroservices::ServiceReference<S>;
    using Param = typename cppmicroservices::ServiceTrackerCustomizer<S, T>::TrackedParamType;
    using Make = std::function<std::shared_ptr<Param>(Reference const&)>;
    using React = std::function<void(Reference const&)>;

    explicit LoggingCustomizer(Make theMake) : make(std::move(theMake)) {}

    std::shared_ptr<Param> AddingService(Reference const& reference) override
    {
        log.add("adding " + nameOf(reference));
        return make(reference);
    }

    void ModifiedService(Reference const& reference, std::shared_ptr<Param> const& object) override
    {
        log.add((object ? "modified " : "modified without object ") + nameOf(reference));
        if (onModified) {
            onModified(reference);
        }
    }

    void RemovedService(Reference const& reference, std::shared_ptr<Param> const& object) override
    {
        log.add((object ? "removed " : "removed without object ") + nameOf(reference));
        if (onRemoved) {
            onRemoved(reference);
        }
    }

    static std::string nameOf(cppmicroservices::ServiceReferenceBase const& reference)
    {
        return reference ? reference.GetProperty("name").ToStringNoExcept() : "gone";
    }

    Make make;
    React onModified;
    React onRemoved;
    Log log;
};

/// A started framework in which numbered services are registered.
class TrackerFixture : public ostrel::test::StartedFramework {
protected:
    using Registration = cppmicroservices::ServiceRegistration<Numbered>;
    using Tracker = cppmicroservices::ServiceTracker<Numbered>;
    using Customizer = LoggingCustomizer<Numbered>;

    Registration add(int number, cppmicroservices::ServiceProperties properties = {})
    {
        return context.RegisterService<Numbered>(std::make_shared<Numbered>(number),
                                                 named(number, std::move(properties)));
    }

    static cppmicroservices::ServiceProperties named(int number, cppmicroservices::ServiceProperties properties = {})
    {
        properties["name"] = std::to_string(number);
        return properties;
    }

    /// A customizer's way to keep the services themselves.
    Customizer::Make getting()
    {
        return [this](auto const& reference) { return context.GetService(reference); };
    }
};

} // namespace contract
