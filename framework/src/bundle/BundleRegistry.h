#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace cppmicroservices {

class AnyMap;

namespace detail::core {

class BundleRecord;
class FrameworkCore;

/// The installed bundles of one framework. All functions may be called from any thread.
class BundleRegistry {
public:
    using Record = std::shared_ptr<BundleRecord>;
    using Records = std::vector<Record>;

    /// See BundleContext::InstallBundles().
    ///
    /// @locks one that serves installations alone, and the registry's own for each look at it; no foreign code runs
    Records install(FrameworkCore& core, std::string const& location, AnyMap const& manifests);

    /// Adds the bundles that the program itself holds, if there are any. Sends no events; that is left to the caller.
    ///
    /// @return what was added
    /// @throws std::runtime_error as install()
    /// @locks as install()
    Records addProgram(FrameworkCore& core);

    /// Adds the framework's own bundle; at the beginning of a run.
    ///
    /// @throws std::bad_alloc, and nothing is changed
    void open(Record const& systemBundle);

    using ByLocation = std::multimap<std::string, Record>;

    /// Forgets all bundles, and installs no more; at the end of a run. Needs no memory.
    ///
    /// @return those that were still there
    ByLocation close() noexcept;

    /// By location in byte order, those of one location in order of installation.
    Records all() const;
    Records at(std::string const& location) const;

    /// Null when there is none.
    Record withId(long id) const;

    /// The one before in the order of all(), even when the given one has been removed; the last one for null. Null when
    /// there is none. Needs no memory.
    Record before(BundleRecord const* bundle) const;

    /// Needs no memory.
    void remove(BundleRecord const& bundle);

private:
    struct Candidate;

    static std::vector<Candidate> candidatesIn(std::string const& location, AnyMap const& manifests);
    static std::vector<Candidate> candidatesOf(std::vector<std::string> const& names, std::string const& location,
                                               AnyMap const& manifests);
    Records addMissing(FrameworkCore& core, std::string const& location, AnyMap const& manifests, Records& present);
    Records made(FrameworkCore& core, std::string const& location, std::vector<Candidate> const& candidates);
    void requireNew(BundleRecord const& bundle) const;
    void addLocked(Record const& bundle);
    void removeLocked(BundleRecord const& bundle);
    void addAll(Records const& bundles);

    std::mutex m_installing;    // one installation at a time; taken before m_mutex
    mutable std::mutex m_mutex; // guards all below
    bool m_open = false;
    long m_nextId = 1;
    ByLocation m_byLocation;
    std::unordered_map<long, Record> m_byId;
    std::unordered_multimap<std::string, Record> m_byName;
    std::unordered_map<std::string, std::vector<std::string>>
        m_names; // the bundles that the file at a location has: all that may be installed while one of them is
};

} // namespace detail::core

} // namespace cppmicroservices
